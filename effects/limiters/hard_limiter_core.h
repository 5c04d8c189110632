// The curve of the hard limiter.
#pragma once

#include <cmath>
#include <span>

namespace kelvane {

/// Up to half of full scale (-6 dBFS) the curve is the identity, bit for bit; beyond that a hyperbolic tangent, with
/// the same slope at the joint, bends the magnitude towards full scale. The result never exceeds ±1.0. What is not a
/// number stays so.
inline double soft_clip(double x) {
    if (!(x >= -0.5)) {
        return std::tanh(2.0 * x + 1.0) * 0.5 - 0.5;
    }
    if (x > 0.5) {
        // 2x - 1 in steps of which none rounds, as far as the tangent is still below 1.
        return (std::tanh((x - 0.5) + x - 0.5) + 1.0) * 0.5;
    }
    return x;
}

inline void soft_clip(std::span<double> samples) {
    for (double& sample : samples) {
        sample = soft_clip(sample);
    }
}

} // namespace kelvane
