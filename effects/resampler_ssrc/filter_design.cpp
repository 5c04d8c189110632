#include "effects/resampler_ssrc/filter_design.h"

#include "effects/resampler_ssrc/kaiser_window.h"

#include <cmath>
#include <numbers>

namespace kelvane::ssrc {

namespace {

double sinc(double x) noexcept {
    return x == 0.0 ? 1.0 : std::sin(x) / x;
}

std::int64_t next_odd(std::int64_t length) noexcept {
    return length % 2 == 0 ? length + 1 : length;
}

/// The base length, doubled until the transition band is narrow enough, and one less where that is even.
std::int64_t long_filter_length(double rate_hz, std::int64_t base_length, const converter_quality& quality) noexcept {
    const double width = rate_hz * transition_factor(quality.attenuation_db);
    for (std::int64_t multiple = base_length;; multiple *= 2) {
        const std::int64_t length = multiple % 2 == 0 ? multiple - 1 : multiple;
        if (length > 1 && width / static_cast<double>(length - 1) < quality.transition_band_hz) {
            return length;
        }
    }
}

} // namespace

aligned_array<double> low_pass::taps(double gain) const {
    const kaiser_window window(attenuation_db, length);
    aligned_array<double> values(static_cast<std::size_t>(length));
    double* middle = values.data() + reach();
    for (std::int64_t n = 0; n <= reach(); ++n) {
        const double angle = 2.0 * std::numbers::pi * cutoff_hz * static_cast<double>(n) / rate_hz;
        middle[n] = gain * (2.0 * cutoff_hz / rate_hz) * sinc(angle) * window(n);
        middle[-n] = middle[n];
    }
    return values;
}

low_pass design_long_filter(const rate_plan& plan, const converter_quality& quality) noexcept {
    const double rate_hz = plan.filter_hz();
    const std::uint32_t base_length = plan.goes_up() ? quality.up_filter_taps : quality.down_filter_taps;
    const std::int64_t length = long_filter_length(rate_hz, base_length, quality);
    const double transition_hz = rate_hz * transition_factor(quality.attenuation_db) / static_cast<double>(length - 1);
    const double cutoff_hz = plan.goes_up() ? plan.input_hz / 2.0 : (plan.output_hz - transition_hz) / 2.0;
    return {length, cutoff_hz, rate_hz, static_cast<double>(quality.attenuation_db)};
}

low_pass design_polyphase_filter(const rate_plan& plan, const converter_quality& quality) noexcept {
    const double attenuation_db = quality.attenuation_db;
    const double rate_hz = plan.common_hz;
    if (!plan.goes_up() && plan.osf == 1) {
        return {1, rate_hz / 2.0, rate_hz, attenuation_db};
    }
    const std::uint32_t band_edge_hz = plan.input_hz / 2; // whole numbers, both halves
    const std::uint32_t image_edge_hz = plan.filter_hz() / 2;
    const double transition_hz = image_edge_hz - band_edge_hz;
    const double length = 2.0 / (2.0 * transition_hz) * rate_hz * transition_factor(attenuation_db) + 1.0;
    return {next_odd(static_cast<std::int64_t>(length)), band_edge_hz + transition_hz * 0.5, rate_hz, attenuation_db};
}

filter_designs design_filters(const rate_plan& plan, const converter_quality& quality) noexcept {
    return {design_long_filter(plan, quality), design_polyphase_filter(plan, quality)};
}

} // namespace kelvane::ssrc
