// One frame of MPEG audio of layer III.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace host {

/// What its header tells.
struct mpeg_frame {
    std::uint64_t size_bytes;  ///< with the header
    std::size_t content_bytes; ///< how far into the frame its audio begins: behind the header and the side information
    std::uint32_t sample_rate_hz;
    std::uint32_t channels;
};

inline constexpr std::size_t mpeg_header_bytes = 4;

/// The frame that begins with these `mpeg_header_bytes` bytes. Nothing when they are no header, or one of a frame whose
/// size it does not tell. After ISO/IEC 11172-3 (1993) and 13818-3 (1995), with their half rates halved once more.
std::optional<mpeg_frame> parse_mpeg_header(std::span<const std::byte> header);

} // namespace host
