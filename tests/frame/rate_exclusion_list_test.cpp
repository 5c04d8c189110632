#include "frame/rate_exclusion_list.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

namespace kelvane {

void PrintTo(const rate_exclusion_range& range, std::ostream* out) {
    *out << range.low_hz << ".." << range.high_hz;
}

namespace {

struct parsing {
    std::string_view text;
    rate_exclusion_list ranges;
    std::string_view why;
};

const parsing table[] = {
    {"", {}, "nothing"},
    {"44100", {{44100, 44100}}, "one rate"},
    {"44100-48000", {{44100, 48000}}, "a range"},
    {"32000,44100", {{32000, 32000}, {44100, 44100}}, "two rates"},
    {"44100;88200-96000", {{44100, 44100}, {88200, 96000}}, "semicolons separate too"},
    {"96000-", {}, "the value behind the dash is 0, and the text ends"},
    {"44100-,", {{44100, 0}}, "an item closed by a separator counts whatever it holds"},
    {"-44100", {{0, 44100}}, "no low bound is 0"},
    {"22050--44100", {{22050, 44100}}, "the second dash does not move the low bound"},
    {"1-2-3", {{1, 3}}, "nor does a third bound"},
    {",,", {{0, 0}, {0, 0}}, "empty items"},
    {"0", {}, "the last item counts only if it is not 0"},
    {"0,", {{0, 0}}, "an earlier one always"},
    {"44.1k", {{441, 441}}, "other signs are passed over"},
    {" 44 100 ", {{44100, 44100}}, "blanks too"},
    {"48000-44100", {{48000, 44100}}, "never sorted"},
    {"44100,44100", {{44100, 44100}, {44100, 44100}}, "duplicates stay"},
    {"4294967296", {}, "wraps to 0 at 32 bits"},
    {"4294967297", {{1, 1}}, "wraps to 1"},
    {"12345678901", {{3755744309, 3755744309}}, "eleven digits, modulo 2 to 32"},
    {"1-;2", {{1, 0}, {2, 2}}, "the dash is forgotten behind the separator"},
    {"\xE2\x99\xAB"
     "44100",
     {{44100, 44100}},
     "bytes of other scripts"},
};

TEST(RateExclusions, AreReadInOnePass) {
    for (const parsing& line : table) {
        EXPECT_EQ(parse_rate_exclusions(line.text), line.ranges) << '"' << line.text << "\": " << line.why;
    }
}

TEST(RateExclusions, BothBoundsBelongToARange) {
    const auto list = parse_rate_exclusions("44100-48000;96000");
    for (const std::uint32_t rate_hz : {44100U, 46000U, 48000U, 96000U}) {
        EXPECT_TRUE(is_excluded(list, rate_hz)) << rate_hz;
    }
    for (const std::uint32_t rate_hz : {0U, 44099U, 48001U, 95999U, 96001U}) {
        EXPECT_FALSE(is_excluded(list, rate_hz)) << rate_hz;
    }
}

TEST(RateExclusions, ARangeWithItsBoundsHighFirstHoldsNothing) {
    for (const auto* const text : {"48000-44100", "44100-,", "", ",,"}) {
        for (const std::uint32_t rate_hz : {1000U, 44100U, 46000U, 48000U}) {
            EXPECT_FALSE(is_excluded(parse_rate_exclusions(text), rate_hz)) << text;
        }
    }
}

TEST(RateExclusions, TheTextReadsBackAsTheSameList) {
    EXPECT_EQ(to_text(parse_rate_exclusions("44100, 88200 - 96000")), "44100;88200-96000");
    for (const parsing& line : table) {
        EXPECT_EQ(parse_rate_exclusions(to_text(line.ranges)), line.ranges) << line.text;
    }
}

} // namespace
} // namespace kelvane
