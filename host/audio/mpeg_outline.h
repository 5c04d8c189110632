// What an MP3 file has and what it says that it has.
#pragma once

#include "host/audio/binary_file.h"
#include "host/audio/mpeg_frame.h"

#include <array>
#include <cstdint>
#include <optional>

namespace host {

/// Encoders put a frame in front that declares, in the place of audio, how much follows: it has "Xing" or "Info" where
/// its audio would be.
struct mpeg_outline {
    std::array<std::byte, mpeg_header_bytes> first_header; ///< behind the tags in front
    mpeg_frame first;
    std::uint64_t audio_begin_bytes; ///< behind the declaration, if there is one
    std::optional<std::uint64_t> declared_frames;
    std::optional<std::uint64_t> declared_bytes; ///< from the start of the declaration on

    std::uint64_t there_bytes; ///< likewise
    std::uint64_t frames;      ///< whole ones of audio, with what lies between them passed over
    bool is_clear;             ///< between the frames and behind them is nothing but tags
    bool changes_format;       ///< from one frame to the next, the rate or the channels

    /// As most files are: there are neither fewer bytes nor more than they say.
    bool is_as_declared() const { return declared_frames && declared_bytes == there_bytes; }
};

/// Nothing for a file that does not begin with a frame of layer III, behind any number of tags (ID3). One that
/// `is_as_declared` has its frames taken on trust: none are counted.
std::optional<mpeg_outline> outline_mpeg(binary_file& file);

} // namespace host
