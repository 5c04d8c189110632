#include "effects/resampler_sinc/frame_counts.h"

#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <new>

namespace kelvane {
namespace {

using testing_support::thrown_text;

TEST(FrameCounts, ACountIsTheIntegerPartOfWhatMemoryMayHold) {
    EXPECT_EQ(to_count(0.0, 1), 0U);
    EXPECT_EQ(to_count(0.999, 1), 0U);
    EXPECT_EQ(to_count(544.9, 2), 544U);
    EXPECT_EQ(to_count(-7.5, 2), 0U);
    EXPECT_EQ(to_count(-1e300, 2), 0U);
    EXPECT_EQ(to_count(0x1p59, 1), std::size_t{1} << 59U);
}

TEST(FrameCounts, ACountThatNoMemoryHoldsIsABadAllocation) {
    struct row {
        double things;
        std::size_t samples_each;
    };
    const row table[] = {
        {0x1p60, 1}, {0x1p59, 2},          {0x1p63, 1},
        {0x1p64, 1}, {0x1p32, 0xFFFFFFFF}, {1e300, 1},
        {1e300, 32}, {std::nan(""), 1},    {std::numeric_limits<double>::infinity(), 1},
    };
    for (const row& line : table) {
        EXPECT_EQ(thrown_text<std::bad_alloc>([&] { to_count(line.things, line.samples_each); }), "bad allocation")
            << line.things << " of " << line.samples_each;
    }
}

TEST(FrameCounts, DueIsWhatBelongsToTheInputAndHasNotCome) {
    struct row {
        stream_totals totals;
        std::size_t due;
    };
    const row table[] = {
        {{44100, 48000, 0, 0}, 0},
        {{44100, 48000, 500, 0}, 544}, // 544.2
        {{44100, 48000, 500, 500}, 44},
        {{44100, 48000, 500, 544}, 0},
        {{44100, 48000, 500, 546}, 0}, // more than belongs to it
        {{96000, 48000, 27, 0}, 13},   // 27 / 96000 x 48000 is a little less than 13.5
        {{96000, 48000, 1, 0}, 1},     // 0.5
        {{1, 4294967295, 3, 0}, 12884901885},
        {{48000, 44100, std::uint64_t{48000} << 40U, 0}, std::size_t{44100} << 40U},
    };
    for (const row& line : table) {
        EXPECT_EQ(due_frames(line.totals, 2), line.due)
            << line.totals.in_frames << " in, " << line.totals.out_frames << " out";
    }
}

TEST(FrameCounts, TooManyDueFramesAreABadAllocation) {
    for (const std::uint64_t in_frames : {std::uint64_t{1} << 58U, std::uint64_t{1} << 61U, ~std::uint64_t{0}}) {
        const stream_totals totals{1, 4, in_frames, 0};
        EXPECT_EQ(thrown_text<std::bad_alloc>([&] { due_frames(totals, 1); }), "bad allocation") << in_frames;
    }
}

TEST(FrameCounts, TheLatencyIsWhatHasGoneInLessWhatHasComeOut) {
    EXPECT_EQ(latency_s({44100, 48000, 0, 0}), 0.0);
    EXPECT_EQ(latency_s({44100, 48000, 88200, 48000}), 1.0);
    EXPECT_EQ(latency_s({48000, 8000, 12000, 1000}), 0.125);
}

} // namespace
} // namespace kelvane
