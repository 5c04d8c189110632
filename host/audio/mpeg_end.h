// Whether an MP3 file ends before its audio does.
#pragma once

#include "host/audio/binary_file.h"

namespace host {

/// Throws `audio_error` when an MP3 file ends within its first frame, or has fewer bytes and also fewer frames than its
/// first frame declares. That is the one in the place of audio that encoders put in front, which has "Xing" or "Info"
/// where its audio would be. Its count of bytes alone is no proof: some count tags that may have been taken off since.
/// Other files, and MP3 files without such a frame or with something in front that is no tag, are not looked into.
void check_mpeg_is_not_cut(binary_file& file);

} // namespace host
