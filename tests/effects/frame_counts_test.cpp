#include "effects/resampler_sinc/frame_counts.h"

#include "effects/resampler_sinc/sinc_resampler_core.h"
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

TEST(FrameCounts, TheRoomIsTwiceWhatBelongsToTheTime) {
    EXPECT_EQ(room_samples(48000.0 / 44100.0, 4096, 2), 17833U); // 17832.9 + 0.5
    EXPECT_EQ(room_samples(8000.0 / 44100.0, 4096, 1), 1486U);   // 1486.07 + 0.5
    EXPECT_EQ(thrown_text<std::bad_alloc>([] { room_samples(0x1p25, std::size_t{1} << 34U, 1); }), "bad allocation");
}

TEST(FrameCounts, TheRoomHoldsWhatComesOfACall) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t output_hz;
        std::uint32_t quality;
    };
    const row table[] = {
        {44100, 48000, 2},  {48000, 44100, 1}, {384000, 1501, 2}, // the lowest ratio of "Normal"
        {1, 3652, 0},       {1, 2'796'203, 0},                    // a step a little below 1.5, which is rounded to 1
        {1, 11'184'811, 2},                                       // the same in 24 bits
        {1, 8'388'608, 0},                                        // a step of 0.5
        {1, 33'554'432, 2},
    };
    for (const row& line : table) {
        const auto converter = sinc_resampler::create(line.input_hz, line.output_hz, 1, line.quality);
        ASSERT_NE(converter, nullptr) << line.input_hz << " to " << line.output_hz;
        for (const std::size_t planned_frames : {4096U, 4097U, 6142U, 8192U, 1'000'000U}) {
            for (const std::size_t channels : {1U, 2U, 7U}) {
                EXPECT_LE(converter->output_room(planned_frames) * channels,
                          room_samples(converter->ratio(), planned_frames, channels))
                    << line.input_hz << " to " << line.output_hz << ", " << planned_frames << " frames of " << channels
                    << " channels";
            }
        }
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
