// What stands in front of an MP3's frames so that a decoder gives them all.
#pragma once

#include "host/audio/binary_file.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace host {

struct mpeg_declaration {
    std::vector<std::byte> frame;    ///< to be read before the audio, in place of all that is in front of that
    std::uint64_t audio_begin_bytes; ///< in the file
};

/// The frame that would declare what there is in an MP3 file, for one that declares no frames, or fewer than it has, as
/// several do that are joined. Without it libsndfile takes the bit rate of the first frame for that of all, and stops
/// where the file would end then. Nothing for other files. Counts 1152 or 576 silent frames of audio where a joined
/// file has a declaration of its own.
std::optional<mpeg_declaration> missing_declaration(binary_file& file);

} // namespace host
