#include "host/audio/default_mask.h"

#include "velmora/channel_mask.h"

#include <gtest/gtest.h>

#include <bit>

namespace host {
namespace {

namespace layout = velmora::layout;
namespace speaker = velmora::speaker;

TEST(DefaultMask, IsTheUsualLayoutOfSoManyChannels) {
    const std::uint32_t side_pair = speaker::side_left | speaker::side_right;
    const struct {
        std::uint32_t channels;
        std::uint32_t mask;
    } cases[]{
        {0, 0},
        {1, layout::mono},
        {2, layout::stereo},
        {3, layout::stereo | speaker::low_frequency},
        {4, layout::quad},
        {5, layout::quad | speaker::low_frequency},
        {6, layout::surround_5_1},
        {7, layout::stereo | speaker::front_centre | speaker::low_frequency | speaker::back_centre | side_pair},
        {8, layout::surround_7_1},
        {10, layout::surround_7_1 | speaker::front_left_of_centre | speaker::front_right_of_centre},
    };
    for (const auto& [channels, mask] : cases) {
        EXPECT_EQ(default_mask(channels), mask) << channels;
    }
}

TEST(DefaultMask, OtherCountsTakeTheLowestBits) {
    EXPECT_EQ(default_mask(9), 0x1FFU);
    EXPECT_EQ(default_mask(11), 0x7FFU);
    EXPECT_EQ(default_mask(18), 0x3FFFFU);
    EXPECT_EQ(default_mask(31), 0x7FFFFFFFU);
}

TEST(DefaultMask, HasABitForEachOfUpTo32Channels) {
    for (std::uint32_t channels = 0; channels <= 32; ++channels) {
        EXPECT_EQ(std::popcount(default_mask(channels)), static_cast<int>(channels));
    }
    EXPECT_EQ(default_mask(33), 0xFFFFFFFFU);
}

} // namespace
} // namespace host
