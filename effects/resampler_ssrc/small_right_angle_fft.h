// The right-angle transform of a few points.
#pragma once

#include "effects/resampler_ssrc/unit_root.h"

#include <array>
#include <complex>
#include <cstddef>
#include <span>

namespace kelvane::ssrc {

/// What right_angle_fft.h does for 1 to 16 points, plainly: nodes of two children, spectra as complex numbers.
class small_right_angle_fft {
public:
    static constexpr std::size_t most_points = 16;

    small_right_angle_fft() noexcept;

    /// In place. The signal has 1, 2, 4, 8 or 16 points.
    void forward(std::span<std::complex<double>> signal) const noexcept;
    /// In place; the number of points times the signal.
    void backward(std::span<std::complex<double>> spectrum) const noexcept;

    /// For the value at `place` of a spectrum of `points`, its root's number k: the root is e^(2 pi i (1/4 + k) /
    /// points).
    static std::size_t root_number(std::size_t place, std::size_t points) noexcept;

private:
    /// Of node `number` of a level of `nodes`: at [nodes + number]. The same for every size.
    std::array<unit_root, most_points> roots_{};
};

} // namespace kelvane::ssrc
