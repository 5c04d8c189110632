// Samples as little-endian bytes.
#pragma once

#include <cstddef>
#include <span>

namespace host {

/// PCM of 1 to 4 bytes (one byte is unsigned, as in WAV) or IEEE floats of 4 or 8.
struct sample_layout {
    bool is_float;
    std::size_t bytes;

    bool operator==(const sample_layout&) const = default;
};

constexpr bool is_known(const sample_layout& layout) {
    return layout.is_float ? layout.bytes == 4 || layout.bytes == 8 : layout.bytes >= 1 && layout.bytes <= 4;
}

/// `bytes` holds as many samples as `samples`. Full scale is -1.0 and 1.0.
void decode_samples(const sample_layout& layout, std::span<const std::byte> bytes, std::span<double> samples);

/// The same backwards, integers as `quantise` makes them.
void encode_samples(const sample_layout& layout, std::span<const double> samples, std::span<std::byte> bytes);

} // namespace host
