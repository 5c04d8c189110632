#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "tests/support/strict_block.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using testing_support::bits_of;
using testing_support::block_format;
using testing_support::make_effect;
using testing_support::strict_list;

constexpr auto limiter = "Hard -6dB limiter";

std::vector<double> limit(const std::vector<double>& samples, const block_format& format) {
    strict_list list;
    list.append(samples, format);
    make_effect(limiter)->run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 1U);
    EXPECT_EQ(list.at(0).format(), format);
    return list.at(0).samples();
}

TEST(HardLimiter, QuietSamplesPassBitForBit) {
    const std::vector<double> quiet{0.5, -0.5, 0.25, -0.0, 0.0, 1e-310};
    EXPECT_EQ(bits_of(limit(quiet, {44100, 2, 0x3})), bits_of(quiet));
}

TEST(HardLimiter, LoudSamplesFollowTheCurve) {
    const std::vector<double> out = limit({1.0, -1.0, 0.5000001, -0.5000001}, {44100, 1, 0x4});
    EXPECT_NEAR(out[0], 0.880797077977882, 1e-15); // 0.5 + 0.5 tanh 1
    EXPECT_NEAR(out[1], -0.880797077977882, 1e-15);
    EXPECT_NEAR(out[2], 0.5000001, 1e-12); // just above half scale: the slope is still 1
    EXPECT_GT(out[2], 0.5);
    EXPECT_NEAR(out[3], -0.5000001, 1e-12);
    EXPECT_LT(out[3], -0.5);
}

TEST(HardLimiter, EveryChannelOfAnyLayoutIsLimited) {
    for (const std::uint32_t channels : {1U, 2U, 6U, 33U}) {
        const std::vector<double> out = limit(std::vector<double>(std::size_t{3} * channels, 1.0), {8000, channels, 0});
        for (const double sample : out) {
            EXPECT_NEAR(sample, 0.880797077977882, 1e-15);
        }
    }
}

TEST(HardLimiter, HugeAndImpossibleSamplesStayWithinFullScale) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> out = limit({1e6, -1e6, infinity, -infinity}, {44100, 1, 0x4});
    EXPECT_EQ(out, (std::vector<double>{1.0, -1.0, 1.0, -1.0}));
}

TEST(HardLimiter, ABlockWithoutFramesIsLeftAsItIs) {
    testing_support::strict_block empty(std::vector<double>{}, {44100, 2, 0x3});
    EXPECT_TRUE(make_effect(limiter)->on_block(&empty, nullptr));
    EXPECT_EQ(empty.get_sample_count(), 0U);
    EXPECT_EQ(empty.format(), (block_format{44100, 2, 0x3}));
}

TEST(HardLimiter, ASampleThatIsNotANumberCostsNoOther) {
    const std::vector<double> out = limit({0.25, std::nan(""), 0.25}, {44100, 1, 0x4});
    EXPECT_EQ(out[0], 0.25);
    EXPECT_TRUE(std::isnan(out[1]));
    EXPECT_EQ(out[2], 0.25);
}

} // namespace
