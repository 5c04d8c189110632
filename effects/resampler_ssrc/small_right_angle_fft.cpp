#include "effects/resampler_ssrc/small_right_angle_fft.h"

namespace kelvane::ssrc {

namespace {

/// The angle of a node's factor z^m - r: that of r.
double node_turns(std::size_t number, std::size_t nodes) noexcept {
    if (nodes == 1) {
        return 0.25;
    }
    return (node_turns(number / 2, nodes / 2) + static_cast<double>(number % 2)) / 2.0;
}

// The standard's product of complex numbers minds infinities at a price.

std::complex<double> turned(std::complex<double> value, unit_root by) noexcept {
    return {value.real() * by.re - value.imag() * by.im, value.real() * by.im + value.imag() * by.re};
}

} // namespace

small_right_angle_fft::small_right_angle_fft() noexcept {
    for (std::size_t nodes = 1; nodes < most_points; nodes *= 2) {
        for (std::size_t number = 0; number < nodes; ++number) {
            roots_[nodes + number] = root_at(node_turns(number, nodes) / 2.0);
        }
    }
}

void small_right_angle_fft::forward(std::span<std::complex<double>> signal) const noexcept {
    for (std::size_t nodes = 1; nodes < signal.size(); nodes *= 2) {
        const std::size_t half = signal.size() / nodes / 2;
        for (std::size_t number = 0; number < nodes; ++number) {
            const auto node = signal.subspan(2 * half * number, 2 * half);
            for (std::size_t i = 0; i < half; ++i) {
                const std::complex<double> high = turned(node[i + half], roots_[nodes + number]);
                node[i + half] = node[i] - high;
                node[i] += high;
            }
        }
    }
}

void small_right_angle_fft::backward(std::span<std::complex<double>> spectrum) const noexcept {
    for (std::size_t nodes = spectrum.size() / 2; nodes > 0; nodes /= 2) {
        const std::size_t half = spectrum.size() / nodes / 2;
        for (std::size_t number = 0; number < nodes; ++number) {
            const auto node = spectrum.subspan(2 * half * number, 2 * half);
            const unit_root root = roots_[nodes + number];
            for (std::size_t i = 0; i < half; ++i) {
                const std::complex<double> difference = node[i] - node[i + half];
                node[i] += node[i + half];
                node[i + half] = turned(difference, {root.re, -root.im});
            }
        }
    }
}

std::size_t small_right_angle_fft::root_number(std::size_t place, std::size_t points) noexcept {
    return static_cast<std::size_t>(node_turns(place, points) * static_cast<double>(points) - 0.25);
}

} // namespace kelvane::ssrc
