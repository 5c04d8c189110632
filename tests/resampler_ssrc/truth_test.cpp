// The converter against the plain form of the conversion, and both against the sum that they stand for.
#include "tests/resampler_ssrc/conversions.h"
#include "tests/resampler_ssrc/plain_converter.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvane::ssrc {
namespace {

using namespace testing_support;

double largest_difference(const std::vector<double>& a, const std::vector<double>& b) {
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double difference = std::abs(a[i] - b[i]);
        largest = difference <= largest ? largest : difference; // what is not a number counts
    }
    return largest;
}

TEST(ConverterTruth, TheOutputIsThatOfThePlainForm) {
    random_source random(1);
    std::vector<rate_pair> pairs = sampled_pairs();
    // Nearly as many phases as there are; one tap a phase.
    pairs.insert(pairs.end(), {{44100, 48001}, {48001, 44100}, {8000, 384000}, {2000, 3000}});
    for (const rate_pair& rates : pairs) {
        const std::vector<double> samples = noise(random, 25'000 + pick(random, 0, 999), 1.0);
        const std::vector<double> expected =
            plain_form::converter(rates.input_hz, rates.output_hz).process(samples, true);
        const std::vector<double> actual = convert(rates, samples);
        ASSERT_EQ(actual.size(), expected.size()) << rates;
        EXPECT_LT(largest_difference(actual, expected), 1e-12) << rates;
    }
}

struct filters {
    std::vector<double> filter;
    std::vector<double> prototype;
};

/// Output frame m of a conversion up, tap by tap.
double slow_up(const plain_form::design& d, const filters& taps, const std::vector<double>& x, std::int64_t m) {
    const auto phases = static_cast<std::int64_t>(d.phases);
    const auto reach = static_cast<std::int64_t>(d.stage_length / 2);
    double sum = 0.0;
    for (std::int64_t n = 0; n < static_cast<std::int64_t>(d.filter_taps); ++n) {
        const std::int64_t at =
            (m + static_cast<std::int64_t>(d.discard_frames)) * static_cast<std::int64_t>(d.osf) - n;
        const std::int64_t ticks = at * static_cast<std::int64_t>(d.common_hz / d.filter_hz);
        double value = 0.0;
        for (std::int64_t k = std::max<std::int64_t>(0, (ticks - reach + phases - 1) / phases);
             at >= 0 && k * phases <= ticks + reach && k < static_cast<std::int64_t>(x.size()); ++k) {
            value +=
                x[static_cast<std::size_t>(k)] * taps.prototype[static_cast<std::size_t>(k * phases - ticks + reach)];
        }
        sum += taps.filter[static_cast<std::size_t>(n)] * value;
    }
    return sum;
}

/// Value v of the long filter over the stream with its zeros, tap by tap.
double slow_filtered(const plain_form::design& d, const filters& taps, const std::vector<double>& x, std::int64_t v) {
    const auto osf = static_cast<std::int64_t>(d.osf);
    double sum = 0.0;
    for (std::int64_t k = 0; k < static_cast<std::int64_t>(x.size()) && k * osf <= v; ++k) {
        const auto n = static_cast<std::size_t>(v - k * osf);
        sum += n < taps.filter.size() ? taps.filter[n] * x[static_cast<std::size_t>(k)] : 0.0;
    }
    return sum;
}

/// Output frame m of a conversion down. The prototype begins a phase's taps and one value before the stream.
double slow_down(const plain_form::design& d, const filters& taps, const std::vector<double>& x, std::int64_t m) {
    const auto phases = static_cast<std::int64_t>(d.phases);
    const auto lead = static_cast<std::int64_t>(d.taps_per_phase + 1);
    const std::int64_t ticks =
        (m + static_cast<std::int64_t>(d.discard_frames)) * static_cast<std::int64_t>(d.common_hz / d.output_hz);
    double sum = 0.0;
    for (std::int64_t v = (ticks + phases - 1) / phases; v * phases - ticks < static_cast<std::int64_t>(d.stage_length);
         ++v) {
        sum += taps.prototype[static_cast<std::size_t>(v * phases - ticks)] * slow_filtered(d, taps, x, v - lead);
    }
    return sum;
}

TEST(ConverterTruth, TheOutputIsThePlainSum) {
    random_source random(2);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, rate_pair{32000, 48000}, rate_pair{48000, 96000},
                                   rate_pair{48000, 44100}, rate_pair{48000, 32000}, rate_pair{96000, 48000}}) {
        const plain_form::design design(rates.input_hz, rates.output_hz);
        const filters taps{design.filter(), design.prototype()};
        const std::vector<double> samples = noise(random, 3000, 1.0);
        const std::vector<double> actual = convert(rates, samples);
        for (std::size_t m = 0; m < actual.size(); m += 113) {
            const auto slow = design.goes_up ? slow_up : slow_down;
            ASSERT_NEAR(actual[m], slow(design, taps, samples, static_cast<std::int64_t>(m)), 1e-13)
                << rates << ", frame " << m;
        }
    }
}

/// The most seconds of input that a conversion holds back, fed frame by frame over some seconds.
template <class Feed>
double largest_latency_s(const rate_pair& rates, Feed&& feed) {
    constexpr double seconds = 0.7;
    double largest = 0.0;
    std::size_t made = 0;
    const auto frames = static_cast<std::size_t>(seconds * rates.input_hz);
    constexpr std::size_t step = 16;
    const std::vector<double> silence(step);
    for (std::size_t fed = step; fed < frames; fed += step) {
        made += feed(silence);
        largest =
            std::max(largest, static_cast<double>(fed) / rates.input_hz - static_cast<double>(made) / rates.output_hz);
    }
    return largest;
}

TEST(ConverterTruth, TheLatencyIsNoLongerThanThatOfThePlainForm) {
    for (const rate_pair& rates : sampled_pairs()) {
        plain_form::converter plain(rates.input_hz, rates.output_hz);
        ssrc_converter converter = make_converter(rates);
        const double expected =
            largest_latency_s(rates, [&](const auto& block) { return plain.process(block, false).size(); });
        const double actual =
            largest_latency_s(rates, [&](const auto& block) { return process(converter, block, false).size(); });
        EXPECT_LE(actual, expected) << rates;
    }
}

} // namespace
} // namespace kelvane::ssrc
