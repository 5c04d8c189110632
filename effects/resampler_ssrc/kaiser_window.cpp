#include "effects/resampler_ssrc/kaiser_window.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace kelvane::ssrc {

namespace {

constexpr std::size_t last_term = 15;

constexpr std::array<double, last_term + 1> factorials = [] {
    std::array<double, last_term + 1> values{1.0};
    for (std::size_t m = 1; m <= last_term; ++m) {
        values[m] = values[m - 1] * static_cast<double>(m);
    }
    return values;
}();

double kaiser_alpha(double attenuation_db) noexcept {
    if (attenuation_db <= 21.0) {
        return 0.0;
    }
    if (attenuation_db <= 50.0) {
        return 0.5842 * std::pow(attenuation_db - 21.0, 0.4) + 0.07886 * (attenuation_db - 21.0);
    }
    return 0.1102 * (attenuation_db - 8.7);
}

} // namespace

double transition_factor(double attenuation_db) noexcept {
    return attenuation_db <= 21.0 ? 0.9222 : (attenuation_db - 7.95) / 14.36;
}

double bessel_i0(double x) noexcept {
    double sum = 1.0;
    double power = 1.0;
    for (std::size_t m = 1; m <= last_term; ++m) {
        power *= x / 2.0;
        const double term = power / factorials[m];
        sum += term * term;
    }
    return sum;
}

kaiser_window::kaiser_window(double attenuation_db, std::int64_t length) noexcept
    : alpha_(kaiser_alpha(attenuation_db)), span_(static_cast<double>(length - 1)), peak_(bessel_i0(alpha_)) {}

double kaiser_window::operator()(std::int64_t tap) const noexcept {
    const auto n = static_cast<double>(tap);
    return bessel_i0(alpha_ * std::sqrt(1.0 - 4.0 * n * n / (span_ * span_))) / peak_;
}

} // namespace kelvane::ssrc
