#include "effects/resampler_sinc/lpc_extrapolator_core.h"

#include <algorithm>
#include <array>

namespace kelvane {

namespace {

constexpr double white_noise_factor = 1.0000000001; ///< on the error: keeps pure tones solvable
constexpr double smallest_error_share = 1e-9;       ///< of the energy: below it nothing is left to predict
constexpr double smallest_error = 1e-10;
constexpr double pole_radius = 0.99;

using lag_sums = std::array<double, lpc_order + 1>;
using wide_coefficients = std::array<double, lpc_order>;
using coefficients = std::array<float, lpc_order>;

lag_sums autocorrelation(std::span<const float> samples) noexcept {
    lag_sums sums{};
    for (std::size_t lag = 0; lag < sums.size(); ++lag) {
        for (std::size_t n = lag; n < samples.size(); ++n) {
            sums[lag] += static_cast<double>(samples[n]) * static_cast<double>(samples[n - lag]);
        }
    }
    return sums;
}

/// Raises the order of the solution from `order` by one.
void add_reflection(wide_coefficients& solved, std::size_t order, double reflection) noexcept {
    for (std::size_t low = 0; low < order / 2; ++low) {
        const std::size_t high = order - 1 - low;
        const double before = solved[low];
        solved[low] += reflection * solved[high];
        solved[high] += reflection * before;
    }
    if (order % 2 == 1) {
        solved[order / 2] *= 1.0 + reflection;
    }
    solved[order] = reflection;
}

/// The Levinson-Durbin recursion.
wide_coefficients solve(const lag_sums& lags) noexcept {
    wide_coefficients solved{};
    double error = lags[0] * white_noise_factor;
    for (std::size_t order = 0; order < lpc_order; ++order) {
        if (error < lags[0] * smallest_error_share + smallest_error) {
            break;
        }
        double unexplained = lags[order + 1];
        for (std::size_t j = 0; j < order; ++j) {
            unexplained += solved[j] * lags[order - j];
        }
        const double reflection = -unexplained / error;
        add_reflection(solved, order, reflection);
        error *= 1.0 - reflection * reflection;
    }
    return solved;
}

coefficients damped(const wide_coefficients& solved) noexcept {
    coefficients stored{};
    double factor = 1.0;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        factor *= pole_radius;
        stored[i] = static_cast<float>(solved[i] * factor);
    }
    return stored;
}

} // namespace

void extrapolate(std::span<const float> history, std::span<float> continuation) noexcept {
    const coefficients weights = damped(solve(autocorrelation(history)));
    std::array<float, lpc_order> newest{}; // first the newest
    std::reverse_copy(history.end() - lpc_order, history.end(), newest.begin());
    for (float& next : continuation) {
        double sum = 0.0;
        for (std::size_t j = 0; j < lpc_order; ++j) {
            sum += static_cast<double>(weights[j]) * static_cast<double>(newest[j]);
        }
        next = static_cast<float>(-sum);
        std::shift_right(newest.begin(), newest.end(), 1);
        newest[0] = next;
    }
}

} // namespace kelvane
