#include "effects/resampler_common/rate_entry.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace kelvane {
void PrintTo(const rate_entry& entry, std::ostream* out) {
    *out << entry.selected << " '" << entry.typed << "'";
}

namespace {

constexpr rate_limits limits{.lowest_hz = 1000, .highest_hz = 384'000};

TEST(RateEntry, ARateOfTheListIsSelectedThereAndAnyOtherIsTyped) {
    struct row {
        std::uint32_t rate_hz;
        rate_entry shown;
    };
    const row table[] = {
        {8000, {0, ""}},        {11025, {1, ""}},     {16000, {2, ""}},         {22050, {3, ""}},
        {24000, {4, ""}},       {32000, {5, ""}},     {44100, {6, ""}},         {48000, {7, ""}},
        {64000, {8, ""}},       {88200, {9, ""}},     {96000, {10, ""}},        {0, {-1, "0"}},
        {44101, {-1, "44101"}}, {7999, {-1, "7999"}}, {192000, {-1, "192000"}}, {4294967295, {-1, "4294967295"}},
    };
    for (const row& line : table) {
        EXPECT_EQ(show_rate(line.rate_hz), line.shown) << line.rate_hz;
    }
}

TEST(RateEntry, ATypedRateIsTheNumberAtItsStartWithinTheLimits) {
    struct row {
        std::string typed;
        std::uint32_t rate_hz;
    };
    const row table[] = {
        {"44100", 44100},
        {"1000", 1000},
        {"999", 1000},
        {"0", 1000},
        {"", 1000},
        {"fast", 1000},
        {"-48000", 1000},
        {"48k", 1000},
        {"48000 Hz", 48000},
        {" 96000", 96000},
        {"384000", 384000},
        {"384001", 384000},
        {"4294967296", 384000},
        {"44100.9", 44100},
        {"44 100", 1000},
        {"4294969296", 384000}, // 2000 in 32 bits
        {"99999999999999999999", 384000},
        {"-99999999999999999999", 1000},
    };
    for (const row& line : table) {
        EXPECT_EQ(read_rate({-1, line.typed}, limits), line.rate_hz) << line.typed;
    }
}

TEST(RateEntry, ASelectedRateCountsWhateverTheTextStillIs) {
    EXPECT_EQ(read_rate({7, "44100"}, limits), 48000U);
    EXPECT_EQ(read_rate({0, ""}, limits), 8000U);
    EXPECT_EQ(read_rate({10, "x"}, limits), 96000U);
    EXPECT_EQ(read_rate({11, "44100"}, limits), 44100U); // none of the list
    EXPECT_EQ(read_rate({10, ""}, {.lowest_hz = 1000, .highest_hz = 50000}), 50000U);
}

} // namespace
} // namespace kelvane
