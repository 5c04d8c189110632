// Whether a file ends before its audio does, or its audio before the file.
#pragma once

#include "host/audio/binary_file.h"

namespace host {

/// Throws `audio_error` when an AIFF, W64, CAF, AU or big-endian WAV file is shorter than its header says, or an Ogg
/// file lacks its end, an MP3 file has less than it declares, or a file of these two kinds has more than would be read
/// of it: several streams one behind the other. Other files tell it, if at all, only to those who decode them.
void check_is_not_cut(binary_file& file);

} // namespace host
