#include "effects/silence/silence_fade_core.h"
#include "effects/silence/silence_rules_core.h"
#include "effects/silence/silence_segment_core.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kelvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

TEST(SilenceSegment, TakesATenthOfASecond) {
    struct row {
        std::uint32_t rate_hz;
        std::size_t frames;
    };
    const row table[] = {
        {1000, 100}, {1004, 100},   {1005, 101}, // halves go up
        {8000, 800}, {11025, 1103}, {22050, 2205}, {44100, 4410}, {48000, 4800}, {20'000'000, 2'000'000},
    };
    for (const row& line : table) {
        silence_segment_measure segment;
        EXPECT_EQ(segment.room_frames(line.rate_hz), line.frames) << line.rate_hz;
        segment.add(line.frames, line.rate_hz, 0.0);
        EXPECT_EQ(segment.room_frames(line.rate_hz), 0U) << line.rate_hz;
        EXPECT_EQ(segment.duration_s(), static_cast<double>(line.frames) / line.rate_hz) << line.rate_hz;
    }
}

TEST(SilenceSegment, GoesOnAtAnotherRateForTheTimeThatIsLeft) {
    silence_segment_measure segment;
    segment.add(200, 8000, 0.0); // a quarter of it
    EXPECT_EQ(segment.room_frames(48000), 3600U);
    EXPECT_EQ(segment.room_frames(1000), 75U);
    segment.add(3600, 48000, 0.0);
    EXPECT_EQ(segment.room_frames(8000), 0U);
}

TEST(SilenceSegment, IsLoudFromTheThresholdOn) {
    struct row {
        double peak;
        double threshold_db;
        bool is_silent;
    };
    const row table[] = {
        {0.001, -60.0, false}, // exactly at it
        {0.000999, -60.0, true},     {0.01, -40.0, false}, {0.00999, -40.0, true},          {0.0, -60.0, true},
        {0.0, -144.0, true},         {0.0, -145.0, false}, // below the level of digital silence, -144.49 dB
        {1.0, 0.0, false},           {1.0, 1.0, true},     {infinity, 2147483647.0, false}, {not_a_number, -60.0, true},
        {0.0, -2147483648.0, false},
    };
    for (const row& line : table) {
        silence_segment_measure segment;
        segment.add(1, 8000, line.peak);
        EXPECT_EQ(segment.is_silent(line.threshold_db), line.is_silent) << line.peak << " at " << line.threshold_db;
    }
}

TEST(SilenceSegment, OneLoudPieceMakesAllOfItLoud) {
    silence_segment_measure segment;
    for (const double peak : {0.0, not_a_number, 0.5, not_a_number, 0.0}) {
        segment.add(1, 8000, peak);
    }
    EXPECT_FALSE(segment.is_silent(-7.0));
    EXPECT_TRUE(segment.is_silent(-6.0)); // 0.5 is -6.02 dB
}

TEST(SilenceRules, TheMinimumIsRoundedToTenthsOfASecond) {
    struct row {
        std::uint32_t minimum_ms;
        std::size_t segments;
    };
    const row table[] = {{5000, 50}, {0, 1},   {40, 1},  {50, 1},      {149, 1},
                         {150, 2},   {249, 2}, {250, 3}, {20000, 200}, {4294967295U, 42'949'673}};
    for (const row& line : table) {
        EXPECT_EQ(silence_rules(line.minimum_ms, true).lookahead_segments(), line.segments) << line.minimum_ms;
    }
}

/// The verdicts on segments of a stream as a word: p pass, o fade out, i fade in, d drop. `known` has a letter for each
/// segment: the number of segments from it on that are known to be silent, 0 to 9, and '.' where nothing new is known.
std::string verdicts(silence_rules rules, const std::string& known) {
    std::string given;
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i] != '.') {
            rules.note_silence(static_cast<std::size_t>(known[i] - '0'));
        }
        given += "poid"[static_cast<int>(rules.judge_next(i + 1 == known.size()))];
    }
    return given;
}

TEST(SilenceRules, CutALongSilence) {
    struct row {
        std::uint32_t minimum_ms;
        bool keeps_initial;
        std::string known;
        std::string expected;
        const char* why;
    };
    const row table[] = {
        {200, true, ".....", "ppppp", "no silence"},
        {200, true, ".2...", "ppppp", "as long as what is kept: nothing is left to cut"},
        {200, true, ".222....", "pppoippp", "two stay, one fades out, and the last one fades in"},
        {200, true, ".2222222.....", "pppoddddipppp", "what is between the fades is dropped"},
        {200, false, ".2222222.....", "poddddddipppp", "nothing is kept"},
        {300, false, ".3....", "podipp", "the shortest that is cut"},
        {300, true, ".3....", "pppppp", "the same where it is kept"},
        {200, false, ".2..2..", "poipoip", "each silence is judged anew"},
        {200, false, ".2.2..", "poioip", "also the one right behind another"},
        {100, false, ".1111..", "ppppppp", "one segment at a time is always the last one known"},
        {200, true, ".22222", "pppodd", "the end is no resumption: no fade in"},
        {200, false, "222", "odd", "nothing but silence"},
        {200, false, "1", "o", "a single segment"},
        {200, true, "1", "p", "a single segment that is kept"},
    };
    for (const row& line : table) {
        EXPECT_EQ(verdicts(silence_rules(line.minimum_ms, line.keeps_initial), line.known), line.expected) << line.why;
    }
}

TEST(SilenceRules, ASegmentOutsideASilenceEndsIt) {
    silence_rules rules(200, false);
    rules.note_silence(1);
    EXPECT_EQ(rules.judge_next(true), silence_verdict::fade_out); // the end, so it seemed
    EXPECT_EQ(rules.judge_next(false), silence_verdict::pass);
    rules.note_silence(2);
    EXPECT_EQ(rules.judge_next(false), silence_verdict::fade_out);
}

TEST(SilenceRules, AResetForgetsARunningSilence) {
    silence_rules rules(200, false);
    rules.note_silence(9);
    EXPECT_EQ(rules.judge_next(false), silence_verdict::fade_out);
    rules.reset();
    EXPECT_EQ(rules.judge_next(false), silence_verdict::pass);
    rules.note_silence(2);
    EXPECT_EQ(rules.judge_next(false), silence_verdict::fade_out);
}

TEST(SilenceFade, IsARaisedCosineOverOneSecond) {
    constexpr std::uint32_t rate_hz = 1000;
    std::vector<double> out(rate_hz, 1.0);
    std::vector<double> in(rate_hz, 1.0);
    silence_fade(silence_fade::direction::out).process(out, 1, rate_hz);
    silence_fade(silence_fade::direction::in).process(in, 1, rate_hz);
    for (std::size_t i = 0; i < rate_hz; ++i) {
        // The other form of the same curve.
        const double squared_sine = std::pow(std::sin(std::acos(-1.0) * static_cast<double>(i) / rate_hz / 2.0), 2.0);
        EXPECT_NEAR(in[i], squared_sine, 1e-12) << i;
        EXPECT_NEAR(out[i], 1.0 - squared_sine, 1e-12) << i;
    }
    EXPECT_EQ(in[0], 0.0);
    EXPECT_EQ(out[0], 1.0);
    EXPECT_NEAR(out[100], 0.976, 0.001); // where a segment ends
    EXPECT_NEAR(in[100], 0.024, 0.001);
}

TEST(SilenceFade, RunsOnAcrossPiecesAndRatesWithOneGainAFrame) {
    std::vector<double> whole(200, 1.0);
    silence_fade(silence_fade::direction::out).process(whole, 1, 2000);

    silence_fade fade(silence_fade::direction::out);
    std::vector<double> first(200, 1.0); // 100 frames of two channels
    std::vector<double> rest(50, 1.0);   // the second half at half the rate
    fade.process(first, 2, 2000);
    fade.process(rest, 1, 1000);
    for (std::size_t i = 0; i < 100; ++i) {
        EXPECT_EQ(first[2 * i], whole[i]) << i;
        EXPECT_EQ(first[2 * i + 1], whole[i]) << i;
    }
    for (std::size_t i = 0; i < 50; ++i) {
        EXPECT_NEAR(rest[i], whole[100 + 2 * i], 1e-14) << i;
    }
}

} // namespace
} // namespace kelvane
