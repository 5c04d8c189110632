#include "effects/limiters/advanced_limiter_core.h"

#include "tests/support/literal_limiter.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <iterator>
#include <limits>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr double denormal = std::numeric_limits<double>::denorm_min();

/// Full passages, silent ones, ones just below and above the ceiling, lone peaks and bursts up to a million.
std::vector<double> eventful(random_source& random, std::size_t samples) {
    constexpr double loudness[] = {0.0, 0.5, 1.0, 1.0 + 1e-12, 3.0, 1e6, denormal, 0.999};
    std::vector<double> made;
    while (made.size() < samples) {
        const std::vector<double> passage =
            noise(random, pick(random, 1, 1500), loudness[pick(random, 0, std::size(loudness) - 1)]);
        made.insert(made.end(), passage.begin(), passage.end());
        made.back() = pick(random, 0, 3) == 0 ? 40.0 : made.back();
    }
    made.resize(samples);
    return made;
}

/// Samples that no music has, strewn into `signal`.
void spoil(random_source& random, std::vector<double>& signal, double strange, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        signal[pick(random, 0, signal.size() - 1)] = strange;
    }
}

std::vector<double> limited(std::vector<double> interleaved, std::size_t channels, std::size_t longest_run,
                            random_source& random) {
    std::vector<limiter_channel_pair> pairs((channels + 1) / 2);
    double* next = interleaved.data();
    for (const std::size_t frames : split(random, interleaved.size() / channels, longest_run)) {
        limit_frames(pairs, {next, frames * channels}, channels);
        next += frames * channels;
    }
    return interleaved;
}

std::vector<double> limited(const std::vector<double>& mono) {
    random_source random(1);
    return limited(mono, 1, mono.size(), random);
}

std::vector<double> limited_literally(std::vector<double> interleaved, std::size_t channels) {
    std::vector<literal_limiter> limiters(channels);
    for (std::size_t i = 0; i < interleaved.size(); ++i) {
        interleaved[i] = limiters[i % channels].step(interleaved[i]);
    }
    return interleaved;
}

TEST(LiteralLimiter, TheFirstStepTakesTheGainDownByTheRoundingOfItsConstants) {
    literal_limiter literal;
    EXPECT_EQ(literal.gain(), 1.0);
    literal.step(0.5);
    EXPECT_DOUBLE_EQ(literal.gain(), 0.9999999776482582);
}

TEST(LiteralLimiter, TheTreeIsTheLargestOfTheLast256Magnitudes) {
    random_source random(1);
    literal_limiter literal;
    std::deque<double> window(256, 0.0);
    for (const double sample : eventful(random, 60'000)) {
        literal.step(sample);
        window.pop_front();
        window.push_back(std::fabs(sample));
        ASSERT_EQ(literal.peak(), std::max(1.0, *std::max_element(window.begin(), window.end())));
    }
}

TEST(AdvancedLimiter, EqualsTheLiteralOneBitForBitInAnyNumberOfChannelsAndAtAnyCutting) {
    random_source random(2);
    for (const std::size_t channels : {1U, 2U, 3U, 6U, 8U}) {
        const std::vector<double> in = eventful(random, 30'000 * channels);
        const auto expected = bits_of(limited_literally(in, channels));
        for (const std::size_t longest_run : {1U, 2U, 7U, 255U, 256U, 257U, 1000U, 30'000U}) {
            EXPECT_EQ(bits_of(limited(in, channels, longest_run, random)), expected)
                << channels << " channels, runs of up to " << longest_run;
        }
    }
}

TEST(AdvancedLimiter, EqualsTheLiteralOneForSamplesThatNoMusicHas) {
    random_source random(3);
    for (const double strange : {infinity, -infinity, not_a_number, denormal, -0.0, 1e300}) {
        std::vector<double> in = eventful(random, 60'000);
        spoil(random, in, strange, 30);
        EXPECT_EQ(comparable_bits(limited(in, 2, 700, random)), comparable_bits(limited_literally(in, 2))) << strange;
    }
}

TEST(AdvancedLimiter, NothingEverComesOutAboveFullScale) {
    random_source random(4);
    for (const double strange : {0.0, infinity, not_a_number, std::numeric_limits<double>::max(), 6e307, denormal}) {
        std::vector<double> in = eventful(random, 200'000);
        spoil(random, in, strange, 100);
        const std::vector<double> huge = noise(random, 5000, std::numeric_limits<double>::max());
        in.insert(in.end(), huge.begin(), huge.end());
        const std::vector<double> out = limited(in, 2, 500, random);
        EXPECT_FALSE(std::any_of(out.begin(), out.end(), [](double sample) { return std::fabs(sample) > 1.0; }))
            << strange;
    }
}

TEST(AdvancedLimiter, ComesToRestJustBelowUnity) {
    // The fixed point of aim = 0.9 aim + 0.1 in the widened numbers of single precision; each step rounds anew.
    const double resting = 0.10000000149011612 / (1.0 - 0.8999999761581421);
    const std::vector<double> out = limited(std::vector<double>(5000, 1.0));
    EXPECT_EQ(out[254], 0.0);
    EXPECT_NEAR(out[255], resting, 1e-12); // at rest before the first sample comes out
    EXPECT_NEAR(resting, 1.0 - 2.2e-7, 1e-8);
    for (std::size_t i = 255; i < out.size(); ++i) {
        ASSERT_NEAR(out[i], resting, 1e-15);
        ASSERT_EQ(out[i], out[255 + 200]) << i; // not even the last bit moves any more
    }
}

TEST(AdvancedLimiter, ComesDownBeforeASinglePeakAndRecoversByOneInAThousand) {
    std::vector<double> in(3000, 1e-3);
    in[1000] = 2.0;
    const std::vector<double> out = limited(in);
    const auto gain_at = [&](std::size_t i) { return out[i + 255] / in[i]; };
    EXPECT_NEAR(gain_at(744), 1.0, 1e-6); // the peak is not in sight yet
    EXPECT_LT(gain_at(746), 0.96);        // and now it is: a tenth of the way to a half per sample
    EXPECT_NEAR(gain_at(745), 1.0 - 0.1 * 0.5, 1e-6);
    EXPECT_NEAR(gain_at(745 + 20), 0.5 + 0.5 * std::pow(0.9, 21), 1e-6);
    EXPECT_LE(out[1255], 1.0);
    EXPECT_NEAR(out[1255], 1.0, 1e-6);
    for (std::size_t n = 1; n < 1000; ++n) {
        EXPECT_NEAR(1.0 - gain_at(1000 + n), 0.5 * std::pow(0.999, static_cast<double>(n)), 2e-5) << n;
    }
}

TEST(AdvancedLimiter, WhatIsNotANumberCostsOneSample) {
    random_source random(5);
    const std::vector<double> clean = eventful(random, 20'000);
    for (const std::size_t at : {0U, 1U, 255U, 256U, 10'000U}) {
        std::vector<double> in = clean;
        in[at] = 0.0;
        std::vector<double> expected = limited(in);
        in[at] = not_a_number;
        const std::vector<double> out = limited(in);
        EXPECT_TRUE(std::isnan(out[at + 255])) << at;
        expected[at + 255] = not_a_number;
        EXPECT_EQ(comparable_bits(out), comparable_bits(expected)) << at;
    }
}

TEST(AdvancedLimiter, AnInfiniteSampleCostsOneAndADipThatEnds) {
    const std::size_t at = 1000;
    std::vector<double> in(40'000, 0.5);
    const std::vector<double> clean = limited(in);
    in[at] = -infinity;
    const std::vector<double> out = limited(in);
    EXPECT_EQ(std::count_if(out.begin(), out.end(), [](double sample) { return std::isnan(sample); }), 1);
    EXPECT_TRUE(std::isnan(out[at + 255]));
    // From 255 samples before it the gain falls by a tenth each, and behind it rises from zero as after any peak.
    EXPECT_EQ(out[at - 1], clean[at - 1]);
    EXPECT_NEAR(out[at], 0.45, 1e-6);
    EXPECT_LT(out[at + 254], 1e-11);
    for (const std::size_t behind : {1U, 100U, 1000U, 5000U}) {
        const double risen = 1.0 - std::pow(0.999, static_cast<double>(behind));
        EXPECT_NEAR(out[at + 255 + behind], 0.5 * risen, 2e-5) << behind;
    }
    EXPECT_NEAR(out.back(), clean.back(), 1e-15); // at rest again, up to the rounding of the way there
}

TEST(AdvancedLimiter, ChannelsDoNotHearEachOther) {
    random_source random(6);
    for (const std::size_t channels : {2U, 5U}) {
        const std::vector<double> in = eventful(random, 20'000 * channels);
        const std::vector<double> out = limited(in, channels, 300, random);
        for (std::size_t channel = 0; channel < channels; ++channel) {
            std::vector<double> alone;
            std::vector<double> expected;
            for (std::size_t i = channel; i < in.size(); i += channels) {
                alone.push_back(in[i]);
                expected.push_back(out[i]);
            }
            EXPECT_EQ(bits_of(limited(alone)), bits_of(expected)) << channel << " of " << channels;
        }
    }
}

TEST(AdvancedLimiter, AResetForgetsAudioAndGain) {
    random_source random(7);
    std::vector<limiter_channel_pair> pairs(1);
    std::vector<double> before = noise(random, 2000, 1e6);
    spoil(random, before, infinity, 5);
    spoil(random, before, not_a_number, 5);
    limit_frames(pairs, before, 2);
    pairs[0].reset();
    std::vector<double> after = eventful(random, 20'000);
    const std::vector<double> expected = limited(after, 2, 20'000, random);
    limit_frames(pairs, after, 2);
    EXPECT_EQ(bits_of(after), bits_of(expected));
}

} // namespace
} // namespace kelvane
