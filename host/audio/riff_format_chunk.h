// The `fmt ` chunk of a WAV or RF64 file.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/sample_codec.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace host {

struct riff_format {
    std::uint32_t sample_rate_hz;
    std::uint32_t channels;
    std::uint32_t channel_mask; ///< 0: none
    std::size_t frame_bytes;    ///< of a block of frames, for other codings than PCM and floats
    std::optional<sample_layout> samples;
};

inline constexpr std::size_t riff_format_most_bytes = 40;

/// `content` is the whole chunk, or as much of it as `riff_format_most_bytes`. Nothing when it is too short.
std::optional<riff_format> parse_riff_format(std::span<const std::byte> content);

/// The chunk's content: the short form for 16-bit mono and stereo, which old programs read, else the extensible one.
std::vector<std::byte> make_riff_format(const audio_format& format, const sample_layout& samples);

} // namespace host
