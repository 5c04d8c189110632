// Whether an MP3 file ends before its audio does.
#pragma once

#include "host/audio/binary_file.h"

namespace host {

/// Throws `audio_error` when an MP3 file ends within its first frame, or has fewer bytes and also fewer frames than it
/// declares. Its count of bytes alone is no proof: some count tags that may have been taken off since. Nor is that of
/// frames where something unknown lies between them or behind: a frame may have become that, and all the rest be there.
///
/// Throws as well when the frames are not all of one rate and channel count: the decoder would stop at the first
/// change. Other files, and those with something in front that is no tag, are not looked into.
void check_mpeg_is_not_cut(binary_file& file);

} // namespace host
