#include "tests/resampler_ssrc/measurements.h"

#include "tests/resampler_ssrc/plain_filters.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace testing_support {

namespace {

constexpr double pi = std::numbers::pi;

/// The angle is taken from whole numbers, so that it is as exact at the end as at the start.
double angle(std::uint64_t n, std::uint32_t frequency_hz, std::uint32_t rate_hz) {
    return 2.0 * pi * static_cast<double>(n * frequency_hz % rate_hz) / rate_hz;
}

/// A converted cosine and the part of it that the filters' ends do not touch.
struct converted_tone {
    std::vector<double> samples;
    std::size_t first;
    std::size_t last;
};

converted_tone convert_tone(const rate_pair& rates, std::uint32_t frequency_hz, double seconds) {
    const plain_form::design design(rates.input_hz, rates.output_hz);
    const double reach_s = 0.6 * static_cast<double>(design.filter_taps) / static_cast<double>(design.filter_hz);
    std::vector<double> samples(static_cast<std::size_t>((seconds + 2.0 * reach_s) * rates.input_hz));
    for (std::size_t n = 0; n < samples.size(); ++n) {
        samples[n] = std::cos(angle(n, frequency_hz, rates.input_hz));
    }
    return {convert(rates, samples), static_cast<std::size_t>(reach_s * rates.output_hz),
            static_cast<std::size_t>((reach_s + seconds) * rates.output_hz)};
}

struct tone_fit {
    double cosine;
    double sine;
    double rest_power; ///< mean square of what the tone does not explain
};

/// The tone of the frequency in it, by least squares.
tone_fit fit_tone(const converted_tone& tone, std::uint32_t frequency_hz, std::uint32_t rate_hz) {
    const auto& [samples, first, last] = tone;
    double cc = 0.0;
    double cs = 0.0;
    double ss = 0.0;
    double yc = 0.0;
    double ys = 0.0;
    for (std::size_t n = first; n < last; ++n) {
        const double c = std::cos(angle(n, frequency_hz, rate_hz));
        const double s = std::sin(angle(n, frequency_hz, rate_hz));
        cc += c * c;
        cs += c * s;
        ss += s * s;
        yc += samples[n] * c;
        ys += samples[n] * s;
    }
    const double determinant = cc * ss - cs * cs;
    tone_fit fit{(yc * ss - ys * cs) / determinant, (ys * cc - yc * cs) / determinant, 0.0};
    for (std::size_t n = first; n < last; ++n) {
        const double rest = samples[n] - fit.cosine * std::cos(angle(n, frequency_hz, rate_hz)) -
                            fit.sine * std::sin(angle(n, frequency_hz, rate_hz));
        fit.rest_power += rest * rest;
    }
    fit.rest_power /= static_cast<double>(last - first);
    return fit;
}

constexpr double tone_power = 0.5; ///< of amplitude 1

double decibels(double power_ratio) {
    return 10.0 * std::log10(power_ratio);
}

} // namespace

tone_result measure_tone(const rate_pair& rates, std::uint32_t frequency_hz, double seconds) {
    const tone_fit fit = fit_tone(convert_tone(rates, frequency_hz, seconds), frequency_hz, rates.output_hz);
    const double late_radians = std::atan2(fit.sine, fit.cosine);
    return {20.0 * std::log10(std::hypot(fit.cosine, fit.sine)), decibels(fit.rest_power / tone_power),
            late_radians / (2.0 * pi * frequency_hz) * rates.output_hz};
}

double measure_rest_db(const rate_pair& rates, std::uint32_t frequency_hz, double seconds) {
    const auto [output, first, last] = convert_tone(rates, frequency_hz, seconds);
    double power = 0.0;
    for (std::size_t n = first; n < last; ++n) {
        power += output[n] * output[n];
    }
    return decibels(power / static_cast<double>(last - first) / tone_power);
}

band_edges edges_of(const rate_pair& rates) {
    const plain_form::design design(rates.input_hz, rates.output_hz);
    return {static_cast<std::uint32_t>(design.cutoff_hz() - design.width_hz() / 2.0),
            static_cast<std::uint32_t>(std::ceil(design.cutoff_hz() + design.width_hz() / 2.0)) + 25};
}

namespace {

/// Twice the place of an impulse's middle in the output, and whether it is a whole number.
struct doubled_place {
    std::int64_t value;
    bool is_whole;
};

doubled_place doubled_middle(const plain_form::design& design, std::int64_t impulse) {
    const auto osf = static_cast<std::int64_t>(design.osf);
    const auto filter_reach = static_cast<std::int64_t>(design.filter_taps / 2);
    const auto discard = static_cast<std::int64_t>(design.discard_frames);
    const auto phases = static_cast<std::int64_t>(design.phases);
    const auto step = static_cast<std::int64_t>(design.common_hz / design.output_hz);
    std::int64_t twice_ticks = 0; // of the common rate
    if (design.goes_up) {
        const auto filter_step = static_cast<std::int64_t>(design.common_hz / design.filter_hz);
        twice_ticks = 2 * (impulse * phases + filter_reach * filter_step);
    } else {
        const auto lead = static_cast<std::int64_t>(design.taps_per_phase + 1);
        const auto stage_reach = static_cast<std::int64_t>(design.stage_length / 2);
        twice_ticks = 2 * ((impulse * osf + filter_reach + lead) * phases - stage_reach);
    }
    return {twice_ticks / step - 2 * discard, twice_ticks % step == 0};
}

} // namespace

impulse_result measure_impulse(const rate_pair& rates) {
    const plain_form::design design(rates.input_hz, rates.output_hz);
    const auto before = static_cast<std::int64_t>(rates.input_hz / 4);
    std::int64_t impulse = before;
    while (!doubled_middle(design, impulse).is_whole) {
        if (++impulse > before + 100'000) {
            throw std::logic_error("no impulse has its middle on the output's grid");
        }
    }
    std::vector<double> samples(static_cast<std::size_t>(impulse + before));
    samples[static_cast<std::size_t>(impulse)] = 1.0;
    const std::vector<double> output = convert(rates, samples);
    const std::int64_t twice = doubled_middle(design, impulse).value;
    const double expected =
        static_cast<double>(impulse) * static_cast<double>(rates.output_hz) / static_cast<double>(rates.input_hz);
    impulse_result result{0.0, static_cast<double>(twice) / 2.0 - expected};
    const auto reach = static_cast<std::int64_t>(rates.output_hz / 5);
    for (std::int64_t left = twice / 2 - reach; left <= twice / 2; ++left) {
        const double difference =
            output.at(static_cast<std::size_t>(twice - left)) - output.at(static_cast<std::size_t>(left));
        result.asymmetry = std::max(result.asymmetry, std::abs(difference));
    }
    return result;
}

} // namespace testing_support
