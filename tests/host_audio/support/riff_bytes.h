// WAV files put together byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace testing_support {

/// The lowest `bytes` bytes of a number, little-endian.
inline std::string little_endian(std::uint64_t value, std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        text.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    }
    return text;
}

/// A chunk and, behind an odd number of bytes, the pad byte.
inline std::string chunk(std::string_view name, std::string_view content) {
    std::string bytes = std::string(name) + little_endian(content.size(), 4) + std::string(content);
    return content.size() % 2 == 0 ? bytes : bytes + '\0';
}

inline std::string riff(std::string_view chunks) {
    return "RIFF" + little_endian(4 + chunks.size(), 4) + "WAVE" + std::string(chunks);
}

/// The short format chunk; `tag` is 1 for PCM and 3 for floats.
inline std::string format_chunk(unsigned tag, unsigned channels, unsigned bits, unsigned sample_rate_hz = 48000) {
    const std::uint64_t frame_bytes = std::uint64_t{channels} * ((bits + 7) / 8);
    return chunk("fmt ", little_endian(tag, 2) + little_endian(channels, 2) + little_endian(sample_rate_hz, 4) +
                             little_endian(sample_rate_hz * frame_bytes, 4) + little_endian(frame_bytes, 2) +
                             little_endian(bits, 2));
}

/// The extensible one, of PCM.
inline std::string extensible_chunk(unsigned channels, unsigned bits, std::uint32_t mask) {
    using namespace std::string_view_literals;
    const std::string short_form = format_chunk(0xFFFE, channels, bits).substr(8);
    return chunk("fmt ", short_form + little_endian(22, 2) + little_endian(bits, 2) + little_endian(mask, 4) +
                             std::string("\x01\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71"sv));
}

} // namespace testing_support
