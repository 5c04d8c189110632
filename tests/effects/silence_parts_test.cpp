#include "effects/silence/recycled_queue.h"
#include "effects/silence/silence_dialog.h"
#include "effects/silence/silence_segments.h"
#include "effects/silence/silence_settings.h"
#include "effects/silence/silence_words.h"
#include "tests/support/signals.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace kelvane {
namespace {

using testing_support::pick;
using testing_support::random_source;
using testing_support::thrown_text;

std::vector<std::byte> bytes(const std::vector<int>& values) {
    std::vector<std::byte> made;
    made.reserve(values.size());
    for (const int value : values) {
        made.push_back(static_cast<std::byte>(value));
    }
    return made;
}

TEST(SilenceSettings, AreReadFromPayloadsOfAnyLength) {
    const std::vector<int> whole{0xF4, 1, 0, 0, 0xCE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}; // 500 ms, -50 dB, no
    const skip_silence_settings defaults{5000, -60, true};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::vector<int> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        const skip_silence_settings expected =
            length < 8 ? defaults : skip_silence_settings{500, -50, length < whole.size()};
        EXPECT_EQ(skip_silence_settings::read(bytes(cut)), expected) << length;
    }
}

TEST(SilenceSettings, OnlyBit0OfTheThirdFieldCountsAndNothingBehindIt) {
    struct row {
        std::vector<int> third;
        bool keeps_initial;
    };
    const row table[] = {
        {{1, 0, 0, 0}, true},  {{0, 0, 0, 0}, false},          {{2, 0, 0, 0}, false},
        {{3, 0, 0, 0}, true},  {{0xFE, 255, 255, 255}, false}, {{0, 0, 0, 0, 1, 1, 1, 1}, false},
        {{0, 1, 1, 1}, false},
    };
    for (const row& line : table) {
        std::vector<int> payload{0, 0, 0, 0, 0, 0, 0, 0};
        payload.insert(payload.end(), line.third.begin(), line.third.end());
        EXPECT_EQ(skip_silence_settings::read(bytes(payload)).keeps_initial, line.keeps_initial) << line.third[0];
    }
}

TEST(SilenceSettings, AreWrittenInTheOrderOfReading) {
    EXPECT_EQ((skip_silence_settings{}.write()), bytes({0x88, 0x13, 0, 0, 0xC4, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0}));
    EXPECT_EQ((skip_silence_settings{500, -50, false}.write()),
              bytes({0xF4, 1, 0, 0, 0xCE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
}

TEST(SilenceWords, AreThoseOfThePayload) {
    const auto words = silence_words();
    EXPECT_EQ(words->effect(), skip_silence_settings::identity);
    auto payload = words->defaults();
    EXPECT_EQ(words->values(payload), (std::vector<std::string>{"5000", "-60", "yes"}));
    payload = words->with(payload, "min_ms", "4294967295");
    payload = words->with(payload, "threshold_db", "-2147483648");
    payload = words->with(payload, "keep_initial", "no");
    EXPECT_EQ(words->values(payload), (std::vector<std::string>{"4294967295", "-2147483648", "no"}));
    EXPECT_EQ(words->values(words->with(payload, "keep_initial", "yes"))[2], "yes");
}

TEST(SilenceWords, SayWhatTheyDoNotTake) {
    struct row {
        const char* field;
        const char* value;
    };
    const row table[] = {
        {"min_ms", "-1"},      {"min_ms", "4294967296"}, {"min_ms", "1.5"},       {"threshold_db", "2147483648"},
        {"threshold_db", "x"}, {"keep_initial", ""},     {"keep_initial", "1"},   {"keep_initial", "Yes"},
        {"keep_initial", "y"}, {"keep_initial", "noo"},  {"keep_initial", "no "},
    };
    const auto words = silence_words();
    for (const row& line : table) {
        const std::string said = thrown_text<setting_error>([&] { words->with({}, line.field, line.value); });
        EXPECT_EQ(said.find(line.field), 0U) << line.field << '=' << line.value << ": " << said;
    }
}

TEST(SilenceWords, WarnOfAMinimumThatCutsNothing) {
    const auto words = silence_words();
    EXPECT_NE(words->warning(words->with({}, "min_ms", "149"), 44100), "");
    EXPECT_EQ(words->warning(words->with({}, "min_ms", "150"), 44100), "");
}

TEST(SilenceDialog, ShowsStoredValuesAtTheNearestPosition) {
    struct minimum_row {
        std::uint32_t minimum_ms;
        int position;
    };
    for (const auto& line : {minimum_row{200, 200}, minimum_row{5000, 5000}, minimum_row{20000, 20000},
                             minimum_row{0, 200}, minimum_row{199, 200}, minimum_row{20001, 20000},
                             minimum_row{std::numeric_limits<std::uint32_t>::max(), 20000}}) {
        EXPECT_EQ(minimum_position(line.minimum_ms), line.position) << line.minimum_ms;
    }
    struct threshold_row {
        std::int32_t threshold_db;
        int position;
    };
    for (const auto& line :
         {threshold_row{-100, 0}, threshold_row{-60, 40}, threshold_row{-20, 80}, threshold_row{-101, 0},
          threshold_row{-19, 80}, threshold_row{0, 80}, threshold_row{std::numeric_limits<std::int32_t>::max(), 80},
          threshold_row{std::numeric_limits<std::int32_t>::min(), 0}}) {
        EXPECT_EQ(threshold_position(line.threshold_db), line.position) << line.threshold_db;
    }
}

TEST(SilenceDialog, PositionsStandForMillisecondsAndDecibelsAboveMinus100) {
    EXPECT_EQ(minimum_ms_at(200), 200U);
    EXPECT_EQ(minimum_ms_at(20000), 20000U);
    EXPECT_EQ(threshold_db_at(0), -100);
    EXPECT_EQ(threshold_db_at(40), -60);
    EXPECT_EQ(threshold_db_at(80), -20);
}

TEST(RecycledQueue, GivesBackWhatCameInItsOrder) {
    random_source random(1);
    recycled_queue<std::size_t> queue;
    std::deque<std::size_t> expected;
    for (std::size_t step = 0; step < 20'000; ++step) {
        if (pick(random, 0, step < 10'000 ? 2 : 1) != 0 || expected.empty()) {
            queue.push() = step;
            expected.push_back(step);
        } else {
            const std::size_t count = pick(random, 0, std::min<std::size_t>(3, expected.size()));
            queue.pop(count);
            expected.erase(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(count));
        }
        ASSERT_EQ(queue.size(), expected.size());
        ASSERT_EQ(queue.empty(), expected.empty());
        if (!expected.empty()) {
            const std::size_t index = pick(random, 0, expected.size() - 1);
            ASSERT_EQ(queue[index], expected[index]) << step;
            ASSERT_EQ(queue.back(), expected.back()) << step;
        }
    }
}

TEST(RecycledQueue, APlaceKeepsWhatItsElementOwned) {
    recycled_queue<std::vector<int>> queue;
    queue.push().reserve(1000);
    queue.pop();
    std::size_t reserved = 0;
    for (int i = 0; i < 4; ++i) {
        reserved += queue.push().capacity();
        queue.pop();
    }
    EXPECT_EQ(reserved, 1000U);
}

/// The segments' pieces, from the head on; empties the segments.
std::vector<std::vector<double>> pieces_of(silence_segments& segments) {
    std::vector<std::vector<double>> pieces;
    while (segments.size() > 0) {
        segments.for_pieces_of(0, [&](std::span<const double> samples, const stream_format&) {
            pieces.emplace_back(samples.begin(), samples.end());
        });
        segments.pop();
    }
    return pieces;
}

TEST(SilenceSegments, KeepThePiecesApartAlsoWhereThereAreMoreThanFit) {
    silence_segments segments(-60.0);
    const std::vector<double> small{1.0, 2.0};
    const std::vector<double> large(std::size_t{32} * 4000, 3.0);
    segments.start();
    segments.append(small, {1000, 1, 4}, 0.0);
    segments.append(large, {384'000, 32, 0}, 0.0); // far more than the first piece's format asks for
    segments.start();
    segments.append(small, {1000, 2, 3}, 0.0);
    EXPECT_EQ(pieces_of(segments), (std::vector<std::vector<double>>{small, large, small}));
    EXPECT_EQ(segments.duration_s(), 0.0);
}

TEST(SilenceSegments, GiveThePiecesOfAnySegmentAlsoBehindThoseThatHaveGone) {
    silence_segments segments(-60.0);
    const auto first_samples_of = [&](std::size_t index) {
        std::vector<double> found;
        segments.for_pieces_of(index, [&](std::span<const double> samples, const stream_format& format) {
            EXPECT_EQ(samples.size(), format.channels) << index;
            found.push_back(samples[0]);
        });
        return found;
    };
    for (double next = 0.0; next < 60.0; next += 3.0) { // of three pieces and of none in turn
        segments.start();
        segments.append(std::vector<double>{next}, {1000, 1, 0x4}, 0.0);
        segments.append(std::vector<double>{next + 1.0, 0.0}, {1000, 2, 0x3}, 0.0);
        segments.append(std::vector<double>{next + 2.0}, {1000, 1, 0x4}, 0.0);
        segments.start();
        ASSERT_EQ(first_samples_of(0), (std::vector<double>{next, next + 1.0, next + 2.0}));
        ASSERT_TRUE(first_samples_of(1).empty());
        segments.start();
        segments.append(std::vector<double>{-1.0}, {1000, 1, 0x4}, 0.0);
        ASSERT_EQ(first_samples_of(2), std::vector<double>{-1.0});
        segments.pop();
        ASSERT_EQ(first_samples_of(1), std::vector<double>{-1.0});
        segments.pop();
        segments.pop();
    }
}

TEST(SilenceSegments, AreAllSilentUntilALoudOneComesOrTheLastBecomesLoud) {
    silence_segments segments(-60.0);
    const auto append = [&](double peak) { segments.append(std::vector<double>{peak}, {1000, 1, 4}, peak); };
    EXPECT_TRUE(segments.are_all_silent());
    segments.start();
    append(0.0);
    segments.start();
    append(0.0);
    EXPECT_TRUE(segments.are_all_silent());
    append(1.0); // the answer before is not remembered
    EXPECT_FALSE(segments.are_all_silent());
    EXPECT_EQ(segments.silent_at_head(2), 1U);
    segments.pop();
    EXPECT_FALSE(segments.are_all_silent());
}

TEST(SilenceSegments, CountTheSilentOnesUpToALimitOrTheFirstLoudOne) {
    silence_segments segments(-60.0);
    for (const double peak : {0.0, 0.0, 0.0, 1.0, 0.0, 0.0}) {
        segments.start();
        segments.append(std::vector<double>{peak}, {1000, 1, 4}, peak);
    }
    EXPECT_EQ(segments.silent_at_head(0), 0U);
    EXPECT_EQ(segments.silent_at_head(2), 2U);
    EXPECT_EQ(segments.silent_at_head(1), 1U); // also a lower limit later
    EXPECT_EQ(segments.silent_at_head(6), 3U);
    segments.pop();
    EXPECT_EQ(segments.silent_at_head(6), 2U);
    segments.pop();
    segments.pop();
    EXPECT_EQ(segments.silent_at_head(6), 0U);
    segments.pop();
    EXPECT_EQ(segments.silent_at_head(6), 2U); // to the end
    segments.clear();
    EXPECT_EQ(segments.silent_at_head(6), 0U);
}

} // namespace
} // namespace kelvane
