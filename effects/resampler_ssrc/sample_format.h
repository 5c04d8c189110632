// The stream's description and its samples.
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelvane::ssrc {

/// The fields of a WAVEFORMATEX and, behind them, of its extensible form.
struct wave_format {
    std::uint16_t format_tag = 0;
    std::uint16_t channels = 0;
    std::uint32_t rate_hz = 0;
    std::uint32_t bytes_per_s = 0;
    std::uint16_t block_bytes = 0;
    std::uint16_t bits_per_sample = 0;
    std::uint16_t extra_bytes = 0;
    // From here on only with format_tag 0xFFFE and at least 22 extra bytes.
    std::uint16_t valid_bits = 0;
    std::uint32_t channel_mask = 0;
    velmora::guid sub_format{};
};

constexpr std::uint16_t tag_integer = 1;
constexpr std::uint16_t tag_float = 3;
constexpr std::uint16_t tag_extensible = 0xFFFE;
constexpr std::uint16_t extensible_extra_bytes = 22;
constexpr velmora::guid sub_format_integer{0x00000001, 0x0000, 0x0010, {0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71}};
constexpr velmora::guid sub_format_float{0x00000003, 0x0000, 0x0010, {0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71}};

/// A stream of 64-bit floating-point samples.
wave_format float64_format(std::uint32_t rate_hz, std::uint16_t channels) noexcept;

enum class sample_code : std::uint8_t {
    integer16 = 0,
    integer24 = 1,
    integer8 = 2, ///< unsigned, silence at 128
    integer32 = 3,
    float32 = 4,
    float64 = 5,
};

/// Nothing for a description that names no such samples, or whose samples are not whole in their bytes.
std::optional<sample_code> sample_code_of(const wave_format& format) noexcept;

std::size_t bytes_per_sample(sample_code code) noexcept;

/// Takes one channel out of interleaved little-endian samples, full scale of the integers being 1.
/// `first` is the channel's first sample, `frame_bytes` the distance to the next.
void decode(sample_code code, const std::byte* first, std::size_t frame_bytes, double* to, std::size_t frames) noexcept;

/// The inverse: integers are rounded, halves away from zero, and clipped; what is not a number becomes 0 there.
void encode(sample_code code, const double* from, std::byte* first, std::size_t frame_bytes,
            std::size_t frames) noexcept;

} // namespace kelvane::ssrc
