#include "effects/channels/downmix_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace kelvane {
namespace {

using testing_support::bits_of;

/// The single-precision value nearest to the root of one half, from its bits.
const double sqrt_half = static_cast<double>(std::bit_cast<float>(0x3F3504F3U));
/// Half of it; halving is exact.
const double half_sqrt_half = static_cast<double>(std::bit_cast<float>(0x3EB504F3U));

struct speaker_row {
    std::uint32_t bit;
    double left;
    double right;
    double mono;
};

/// What one sample of 1.0 from each speaker gives.
const std::array<speaker_row, 11> speakers{{
    {0x1, 1.0, 0.0, 0.5},
    {0x2, 0.0, 1.0, 0.5},
    {0x4, sqrt_half, sqrt_half, sqrt_half},
    {0x8, 1.0, 1.0, 1.0},
    {0x10, sqrt_half, 0.0, half_sqrt_half},
    {0x20, 0.0, sqrt_half, half_sqrt_half},
    {0x40, sqrt_half, 0.0, half_sqrt_half},
    {0x80, 0.0, sqrt_half, half_sqrt_half},
    {0x100, sqrt_half, sqrt_half, sqrt_half},
    {0x200, sqrt_half, 0.0, half_sqrt_half},
    {0x400, 0.0, sqrt_half, half_sqrt_half},
}};

template <std::size_t Outputs>
std::vector<double> mix(std::uint32_t mask, const std::vector<double>& in) {
    const auto channels = static_cast<std::uint32_t>(std::popcount(mask));
    const auto matrix = downmix_matrix<Outputs>::make(mask, channels);
    std::vector<double> out(in.size() / channels * Outputs);
    matrix.value().mix(in, out);
    return out;
}

TEST(Downmix, EachSpeakerAloneHasItsWeights) {
    for (const speaker_row& speaker : speakers) {
        EXPECT_EQ(mix<2>(speaker.bit, {1.0}), (std::vector<double>{speaker.left, speaker.right})) << speaker.bit;
        EXPECT_EQ(mix<1>(speaker.bit, {1.0}), (std::vector<double>{speaker.mono})) << speaker.bit;
    }
}

TEST(Downmix, TheSetBitsOfAnyMaskNameTheChannelsInOrder) {
    testing_support::random_source random(1);
    for (std::uint32_t mask = 1; mask < 0x800; ++mask) {
        const std::vector<double> in =
            testing_support::noise(random, static_cast<std::size_t>(std::popcount(mask)), 1.0);
        double left = 0.0;
        double right = 0.0;
        double mono = 0.0;
        std::size_t channel = 0;
        for (const speaker_row& speaker : speakers) {
            if ((mask & speaker.bit) != 0) {
                left = left + in[channel] * speaker.left;
                right = right + in[channel] * speaker.right;
                mono = mono + in[channel] * speaker.mono;
                ++channel;
            }
        }
        EXPECT_EQ(bits_of(mix<2>(mask, in)), bits_of({left, right})) << mask;
        EXPECT_EQ(bits_of(mix<1>(mask, in)), bits_of({mono})) << mask;
    }
}

TEST(Downmix, FramesDoNotMix) {
    EXPECT_EQ(mix<1>(0x3, {1.0, 0.0, 0.0, 1.0, 1.0, 1.0}), (std::vector<double>{0.5, 0.5, 1.0}));
    EXPECT_EQ(mix<2>(0x7, {1.0, 2.0, 0.0, 3.0, 4.0, 0.0}), (std::vector<double>{1.0, 2.0, 3.0, 4.0}));
}

TEST(Downmix, WhatIsNoFiniteNumberReachesTheOtherSideToo) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double strange : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        const std::vector<double> out = mix<2>(0x3, {strange, 0.25, 0.5, 0.75});
        EXPECT_FALSE(std::isfinite(out[0])) << strange;
        EXPECT_TRUE(std::isnan(out[1])) << strange; // strange x 0.0 is in the sum
        EXPECT_EQ(out[2], 0.5);
        EXPECT_EQ(out[3], 0.75);
    }
}

TEST(Downmix, NothingIsNormalised) {
    const std::vector<double> out = mix<2>(0x3F, std::vector<double>(6, 1.0));
    EXPECT_DOUBLE_EQ(out[0], 2.0 + 2.0 * sqrt_half);
    EXPECT_DOUBLE_EQ(out[1], 2.0 + 2.0 * sqrt_half);
}

TEST(Downmix, ThereIsNoMatrixForAStrangeLayout) {
    struct row {
        std::uint32_t mask;
        std::uint32_t channels;
    };
    for (const row& strange : {row{0x3F, 8}, row{0x3F, 5}, row{0, 1}, row{0, 2}, row{0x800, 1}, row{0xE3F, 9},
                               row{0x80000000, 1}, row{0xFFFFFFFF, 32}}) {
        EXPECT_FALSE(stereo_downmix::make(strange.mask, strange.channels)) << strange.mask;
        EXPECT_FALSE(mono_downmix::make(strange.mask, strange.channels)) << strange.mask;
    }
}

} // namespace
} // namespace kelvane
