#include "effects/crossfeed/crossfeed_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace kelvane {
namespace {

using testing_support::bits_of;

constexpr double pi = std::numbers::pi;

/// The same filter written down as its difference equations, one frame after the other, nothing shared.
std::vector<double> slow_crossfeed(std::vector<double> samples, double strength, double rate_hz) {
    double a = 0.0;
    double b = 0.0;
    double d = 0.0;
    const double r = 1.0 / rate_hz;
    const double k1 = r * 2128.0;
    const double k2 = strength * r;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        samples[i] = samples[i] + a;
        samples[i + 1] = samples[i + 1] + b;
        const double e = samples[i] - samples[i + 1];
        const double p = k2 * d;
        a = a - (k1 * a + p);
        b = b - (k1 * b - p);
        d = e;
    }
    return samples;
}

/// Amplitude of a side signal (left = -right) of the frequency behind the filter, by correlation over whole periods.
double side_gain(std::int32_t strength, double rate_hz, double frequency_hz) {
    const auto period_frames = static_cast<std::size_t>(rate_hz / frequency_hz);
    const std::size_t frames = 20 * period_frames;
    std::vector<double> samples(2 * frames);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[2 * i] = std::sin(2.0 * pi * frequency_hz * static_cast<double>(i) / rate_hz);
        samples[2 * i + 1] = -samples[2 * i];
    }
    crossfeed_core(strength, static_cast<std::uint32_t>(rate_hz)).process(samples);
    std::complex<double> sum;
    for (std::size_t i = frames - 10 * period_frames; i < frames; ++i) {
        sum += samples[2 * i] * std::polar(1.0, -2.0 * pi * frequency_hz * static_cast<double>(i) / rate_hz);
    }
    return 2.0 * std::abs(sum) / static_cast<double>(10 * period_frames);
}

TEST(Crossfeed, SeparationIsLostAtLowFrequencies) {
    struct row {
        std::int32_t strength;
        double loss_db; // 20 log10(1 + 2 x strength / 2128)
    };
    for (const row& expected : {row{100, 0.78}, row{1000, 5.76}, row{10000, 20.34}}) {
        EXPECT_NEAR(-20.0 * std::log10(side_gain(expected.strength, 44100.0, 1.0)), expected.loss_db, 0.02)
            << expected.strength;
    }
}

TEST(Crossfeed, SeparationStaysAtHighFrequencies) {
    EXPECT_NEAR(20.0 * std::log10(side_gain(1000, 44100.0, 17640.0)), 0.0, 0.15);
}

TEST(Crossfeed, FollowsItsDifferenceEquationsBitForBit) {
    testing_support::random_source random(1);
    for (const std::int32_t strength : {1000, 100, 10000, 0, -500, 2147483647, -2147483647 - 1}) {
        for (const std::uint32_t rate_hz : {44100U, 48000U, 8000U, 384000U}) {
            std::vector<double> samples = testing_support::noise(random, 400, 1.0);
            const auto expected = slow_crossfeed(samples, strength, rate_hz);
            crossfeed_core(strength, rate_hz).process(samples);
            EXPECT_EQ(bits_of(samples), bits_of(expected)) << strength << " at " << rate_hz;
        }
    }
}

TEST(Crossfeed, EqualChannelsPassBitForBit) {
    testing_support::random_source random(2);
    std::vector<double> samples = testing_support::noise(random, 2000, 1.0);
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        samples[i + 1] = samples[i];
    }
    const auto before = bits_of(samples);
    crossfeed_core(1000, 44100).process(samples);
    EXPECT_EQ(bits_of(samples), before);
}

TEST(Crossfeed, AnImpulseGoesToItsOwnSideAtOnceAndToBothTwoFramesLater) {
    std::vector<double> samples(8);
    samples[0] = 1.0;
    crossfeed_core(1000, 44100).process(samples);
    EXPECT_EQ(samples[0], 1.0);
    EXPECT_EQ(samples[1], 0.0);
    EXPECT_EQ(samples[2], 0.0); // the difference enters the terms with this frame
    EXPECT_NEAR(samples[4], -1000.0 / 44100.0, 1e-15);
    EXPECT_NEAR(samples[5], 1000.0 / 44100.0, 1e-15);
}

TEST(Crossfeed, AResetForgets) {
    testing_support::random_source random(3);
    crossfeed_core used(1000, 44100);
    std::vector<double> before = testing_support::noise(random, 100, 1.0);
    before[50] = std::nan("");
    used.process(before);
    used.reset();
    std::vector<double> after = testing_support::noise(random, 100, 1.0);
    std::vector<double> fresh = after;
    used.process(after);
    crossfeed_core(1000, 44100).process(fresh);
    EXPECT_EQ(bits_of(after), bits_of(fresh));
}

} // namespace
} // namespace kelvane
