#include "frame/sample_buffer.h"

#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace kelvane {
namespace {

using testing_support::thrown_text;

constexpr std::size_t most = std::numeric_limits<std::size_t>::max();

TEST(SampleBuffer, GrowsToTheLargestNeedAndNeverShrinks) {
    sample_buffer buffer;
    buffer.grow(10);
    buffer.grow(4);
    EXPECT_EQ(buffer.capacity(), 10U);
    buffer.grow(11);
    EXPECT_EQ(buffer.capacity(), 11U);
}

TEST(SampleBuffer, KeepsItsSamplesWhileGrowing) {
    sample_buffer buffer;
    buffer.grow(2);
    buffer.data()[0] = 0.25;
    buffer.data()[1] = -1.0;
    buffer.grow(100'000);
    EXPECT_EQ(buffer.data()[0], 0.25);
    EXPECT_EQ(buffer.data()[1], -1.0);
}

TEST(SampleBuffer, GrowingToNothingFreesIt) {
    sample_buffer buffer;
    buffer.grow(10);
    buffer.grow(0);
    EXPECT_EQ(buffer.capacity(), 0U);
    EXPECT_EQ(buffer.data(), nullptr);
}

TEST(SampleBuffer, AnImpossibleSizeIsABadAllocationAndChangesNothing) {
    sample_buffer buffer;
    buffer.grow(3);
    buffer.data()[2] = 7.0;
    for (const std::size_t samples : {most, most / 8 + 1, most / 8, most / 16}) {
        EXPECT_EQ(thrown_text<std::bad_alloc>([&] { buffer.grow(samples); }), "bad allocation") << samples;
    }
    EXPECT_EQ(buffer.capacity(), 3U);
    EXPECT_EQ(buffer.data()[2], 7.0);
}

TEST(SampleBuffer, AProductOfFramesAndChannelsThatOverflowsIsABadAllocation) {
    sample_buffer buffer;
    EXPECT_EQ(thrown_text<std::bad_alloc>([&] { buffer.grow_to_frames(most / 2, 4); }), "bad allocation");
    EXPECT_EQ(buffer.grow_to_frames(3, 2).size(), 6U);
}

TEST(SampleBuffer, AMoveTakesTheSamplesAndLeavesAnEmptyBuffer) {
    sample_buffer first;
    first.grow(3);
    first.data()[2] = 7.0;
    sample_buffer second(std::move(first));
    EXPECT_EQ(first.capacity(), 0U); // NOLINT: what is left behind is the question
    EXPECT_EQ(first.data(), nullptr);
    EXPECT_EQ(second.capacity(), 3U);
    sample_buffer third;
    third.grow(100);
    third = std::move(second);
    EXPECT_EQ(second.capacity(), 0U); // NOLINT
    EXPECT_EQ(third.capacity(), 3U);
    EXPECT_EQ(third.data()[2], 7.0);
    second.grow(2); // and it can be used again
    second.data()[1] = 1.0;
    EXPECT_EQ(second.capacity(), 2U);
}

} // namespace
} // namespace kelvane
