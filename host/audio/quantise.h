// Samples as integers.
#pragma once

#include <cmath>
#include <cstdint>

namespace host {

/// The nearest integer of `bits` bits (2 to 32), ties to even, with full scale at -1.0 and 1.0; clipped. What is no
/// number is 0.
inline std::int32_t quantise(double sample, unsigned bits) noexcept {
    const auto full_scale = static_cast<double>(std::uint64_t{1} << (bits - 1));
    const double scaled = std::nearbyint(sample * full_scale);
    if (std::isnan(scaled)) {
        return 0;
    }
    return static_cast<std::int32_t>(std::fmin(std::fmax(scaled, -full_scale), full_scale - 1.0));
}

} // namespace host
