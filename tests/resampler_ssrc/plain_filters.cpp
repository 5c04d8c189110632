#include "tests/resampler_ssrc/plain_filters.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <numeric>

namespace plain_form {

namespace {

using real = long double;

constexpr real pi = std::numbers::pi_v<long double>;
constexpr double d = (170 - 7.95) / 14.36;
constexpr real alpha = 0.1102L * (170 - 8.7L);

real i0(real x) {
    real sum = 1;
    real quotient = 1; // (x / 2)^m / m!
    for (int m = 1; m <= 15; ++m) {
        quotient *= x / 2 / m;
        sum += quotient * quotient;
    }
    return sum;
}

std::vector<double> windowed_sinc(std::uint64_t length, double lpf, std::uint64_t fs, std::uint64_t gain) {
    std::vector<double> h(length);
    const std::uint64_t half = length / 2;
    for (std::uint64_t n = 0; n <= half; ++n) {
        const real x = 2 * pi * static_cast<real>(lpf) * static_cast<real>(n) / static_cast<real>(fs);
        const real at = static_cast<real>(n) / static_cast<real>(half);
        const real window = i0(alpha * std::sqrt(1 - at * at)) / i0(alpha);
        const real sinc = n == 0 ? 1 : std::sin(x) / x;
        h[half + n] = static_cast<double>(2 * static_cast<real>(lpf) / static_cast<real>(fs) * sinc * window *
                                          static_cast<real>(gain));
        h[half - n] = h[half + n];
    }
    return h;
}

} // namespace

design::design(std::uint64_t in, std::uint64_t out)
    : goes_up(in < out), input_hz(in), output_hz(out), common_hz(in / std::gcd(in, out) * out) {
    const std::uint64_t k = common_hz / std::max(in, out);
    osf = k == 1 ? 1 : k % 2 == 0 ? 2 : 3;
    filter_hz = osf * std::max(in, out);
    std::uint64_t base = 16384;
    while (static_cast<double>(filter_hz) * d / static_cast<double>(base - 2) >= 100) {
        base *= 2;
    }
    filter_taps = base - 1;
    fft_size = 2 * std::bit_ceil(filter_taps);
    phases = goes_up ? common_hz / in : common_hz / filter_hz;
    if (!goes_up && osf == 1) {
        phases = 1;
        stage_length = 1;
        taps_per_phase = 1;
        discard_frames = static_cast<std::uint64_t>(0.5 * static_cast<double>(filter_taps) /
                                                        (static_cast<double>(in) / static_cast<double>(out)) +
                                                    0.5 / (static_cast<double>(in) / static_cast<double>(out)));
        return;
    }
    const auto gap = static_cast<double>(stage_gap_hz());
    stage_length = static_cast<std::uint64_t>(2.0 / (2.0 * gap) * static_cast<double>(common_hz) * d + 1.0);
    stage_length |= 1; // odd
    taps_per_phase = stage_length / phases + 1;
    const std::uint64_t step_ticks = common_hz / out;
    const auto half_filter = 0.5 * static_cast<double>(filter_taps);
    discard_frames = static_cast<std::uint64_t>(
        goes_up ? half_filter / static_cast<double>(osf)
                : half_filter / (static_cast<double>(filter_hz) / static_cast<double>(out)) +
                      0.5 * static_cast<double>(stage_length) / static_cast<double>(step_ticks));
}

/// Both halves are whole numbers.
std::uint64_t design::stage_gap_hz() const {
    return filter_hz / 2 - input_hz / 2;
}

double design::width_hz() const {
    return static_cast<double>(filter_hz) * d / static_cast<double>(filter_taps - 1);
}

double design::cutoff_hz() const {
    return goes_up ? static_cast<double>(input_hz) / 2 : (static_cast<double>(output_hz) - width_hz()) / 2;
}

std::vector<double> design::filter() const {
    return windowed_sinc(filter_taps, cutoff_hz(), filter_hz, goes_up ? 1 : osf);
}

std::vector<double> design::prototype() const {
    if (stage_length == 1) {
        return {1.0};
    }
    const std::uint64_t band_edge_hz = input_hz / 2;
    const double middle_hz = static_cast<double>(band_edge_hz) + static_cast<double>(stage_gap_hz()) / 2;
    return windowed_sinc(stage_length, middle_hz, common_hz, phases);
}

} // namespace plain_form
