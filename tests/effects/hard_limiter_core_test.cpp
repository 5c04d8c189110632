#include "effects/limiters/hard_limiter_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace kelvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

/// tanh by its definition with exponentials, in extended precision.
long double slow_tanh(long double x) {
    const long double e = std::exp(-2.0L * std::fabs(x));
    return std::copysign((1.0L - e) / (1.0L + e), x);
}

TEST(SoftClip, PassesUpToHalfScaleBitForBit) {
    testing_support::random_source random(1);
    std::vector<double> samples = testing_support::noise(random, 1000, 0.5);
    samples.insert(samples.end(), {0.5, -0.5, 0.0, -0.0, std::numeric_limits<double>::denorm_min()});
    const auto before = testing_support::bits_of(samples);
    soft_clip(samples);
    EXPECT_EQ(testing_support::bits_of(samples), before);
}

TEST(SoftClip, FollowsTheCurveBeyondHalfScale) {
    for (double x = 0.5; x < 12.0; x += 0.001) {
        const auto expected = static_cast<double>(0.5L + 0.5L * slow_tanh(2.0L * static_cast<long double>(x) - 1.0L));
        EXPECT_NEAR(soft_clip(x), expected, 4e-16) << x;
        EXPECT_NEAR(soft_clip(-x), -expected, 4e-16) << x;
    }
}

TEST(SoftClip, KnownPoints) {
    EXPECT_NEAR(soft_clip(1.0), 0.880797077977882, 1e-15); // 0.5 + 0.5 tanh 1
    EXPECT_NEAR(soft_clip(-1.0), -0.880797077977882, 1e-15);
    EXPECT_GT(soft_clip(0.5000001), 0.5);
    EXPECT_LT(soft_clip(0.5000001), 0.5000002);
    EXPECT_LT(soft_clip(-0.5000001), -0.5);
}

TEST(SoftClip, TheSlopeIsOneAtTheJoint) {
    constexpr double step = 1e-7;
    EXPECT_NEAR((soft_clip(0.5 + step) - 0.5) / step, 1.0, 1e-6);
    EXPECT_NEAR((soft_clip(-0.5 - step) + 0.5) / step, -1.0, 1e-6);
}

TEST(SoftClip, NothingExceedsFullScale) {
    for (const double x : {1e6, 20.0, 1e308, infinity}) {
        EXPECT_LE(soft_clip(x), 1.0) << x;
        EXPECT_GT(soft_clip(x), 0.99) << x;
        EXPECT_GE(soft_clip(-x), -1.0) << x;
        EXPECT_LT(soft_clip(-x), -0.99) << x;
    }
}

TEST(SoftClip, WhatIsNotANumberStaysSo) {
    EXPECT_TRUE(std::isnan(soft_clip(not_a_number)));
}

} // namespace
} // namespace kelvane
