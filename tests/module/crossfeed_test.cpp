#include "tests/module/run_effect.h"
#include "tests/support/built_module.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdint>
#include <numbers>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto crossfeed = "Meier Crossfeed";
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

/// An instance from the payload of these bytes.
host::service_ptr<velmora::effect_instance> make_with(const std::vector<std::uint8_t>& payload) {
    return make_effect(crossfeed, payload);
}

/// How much louder a slow sine in opposite phase on both sides goes in than it comes out, in dB, cut into blocks of any
/// lengths. The first of its two periods leaves the filter settled; over the second it is correlated.
double separation_loss_db(velmora::effect_instance& effect, random_source& random) {
    constexpr std::size_t period_frames = 44100 / 5;
    programme sine{{{44100, 2, 0x3}, {}}};
    for (std::size_t i = 0; i < 2 * period_frames; ++i) {
        const double left = 0.5 * std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / period_frames);
        sine[0].samples.insert(sine[0].samples.end(), {left, -left});
    }
    const std::vector<double> out = play(effect, sine, {1000, 4}, end_of_playback, random).at(0).samples;
    std::complex<double> sum;
    for (std::size_t i = period_frames; i < 2 * period_frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(i) / period_frames;
        sum += std::polar((out.at(2 * i) - out.at(2 * i + 1)) / 2.0, -angle);
    }
    return 20.0 * std::log10(0.5 / (2.0 * std::abs(sum) / period_frames));
}

/// What one side's impulse gives two frames later: the strength over the rate, taken from the side.
double impulse_answer(velmora::effect_instance& effect, std::uint32_t rate_hz) {
    programme impulse{{{rate_hz, 2, 0x3}, std::vector<double>(8)}};
    impulse[0].samples[0] = 1.0;
    return -play_whole(effect, impulse)[0].samples[4];
}

TEST(Crossfeed, TheDefaultStrengthIs1000) {
    const host::effect_entry& effect = built_effects().find(crossfeed);
    const std::vector<std::byte> expected{std::byte{0xE8}, std::byte{3}, std::byte{0}, std::byte{0}};
    EXPECT_EQ(effect.default_preset.payload(), expected);
    EXPECT_TRUE(effect.has_dialog);
    EXPECT_NEAR(impulse_answer(*make_effect(crossfeed), 44100), 1000.0 / 44100.0, 1e-15);
}

TEST(Crossfeed, AShortPayloadGivesTheDefaultAndALongOneItsFirstFourBytes) {
    struct row {
        std::vector<std::uint8_t> payload;
        double strength;
    };
    const row table[] = {
        {{}, 1000.0},
        {{150, 0}, 1000.0},
        {{150, 0, 0}, 1000.0},
        {{150, 0, 0, 0}, 150.0}, // no step of the dialog, and taken as it is
        {{150, 0, 0, 0, 99, 99}, 150.0},
        {{0, 0, 0, 0}, 0.0},
        {{0x0C, 0xFE, 0xFF, 0xFF}, -500.0},
        {{0x20, 0x4E, 0, 0}, 20000.0},
    };
    for (const row& line : table) {
        EXPECT_NEAR(impulse_answer(*make_with(line.payload), 44100), line.strength / 44100.0, 1e-15) << line.strength;
    }
}

TEST(Crossfeed, SeparationIsLostAtLowFrequencies) {
    struct row {
        std::vector<std::uint8_t> strength;
        double loss_db; // 20 log10(1 + 2 x strength / 2128)
    };
    random_source random(1);
    for (const row& line : {row{{0x64, 0, 0, 0}, 0.78}, row{{0xE8, 3, 0, 0}, 5.76}, row{{0x10, 0x27, 0, 0}, 20.34}}) {
        EXPECT_NEAR(separation_loss_db(*make_with(line.strength), random), line.loss_db, 0.02);
    }
}

TEST(Crossfeed, OtherChannelCountsPassBitForBitAndClearTheFilter) {
    random_source random(1);
    const auto effect = make_effect(crossfeed);
    for (const block_format& format : {block_format{44100, 1, 0x4}, block_format{44100, 6, 0x3F}}) {
        play_whole(*effect, noise_in({{44100, 2, 0x3}}, 500, 0.9, random));
        const programme other = noise_in({format}, 500, 0.9, random);
        EXPECT_TRUE(are_equal(play_whole(*effect, other), other)) << format.channels;
        const programme stereo = noise_in({{44100, 2, 0x3}}, 500, 0.9, random);
        EXPECT_TRUE(are_equal(play_whole(*effect, stereo), play_whole(*make_effect(crossfeed), stereo)));
    }
}

TEST(Crossfeed, AnyTwoChannelMaskIsFiltered) {
    random_source random(1);
    for (const std::uint32_t mask : {0x3U, 0x30U, 0x600U, 0x0U}) {
        const programme played = noise_in({{44100, 2, mask}}, 500, 0.9, random);
        EXPECT_FALSE(are_equal(play_whole(*make_effect(crossfeed), played), played)) << mask;
    }
}

TEST(Crossfeed, IdenticalChannelsStayIdenticalAtAnyCutting) {
    random_source random(1);
    programme mono = noise_in({{44100, 2, 0x3}}, 3000, 0.9, random);
    for (std::size_t i = 0; i < mono[0].samples.size(); i += 2) {
        mono[0].samples[i + 1] = mono[0].samples[i];
    }
    EXPECT_TRUE(are_equal(play(*make_effect(crossfeed), mono, {37, 3}, end_of_playback, random), mono));
}

TEST(Crossfeed, ANewRateStartsTheFilterAnew) {
    random_source random(1);
    const auto effect = make_effect(crossfeed);
    const programme first = noise_in({{44100, 2, 0x3}}, 700, 0.9, random);
    const programme second = noise_in({{48000, 2, 0x3}}, 700, 0.9, random);
    programme both = first;
    both.push_back(second[0]);
    programme apart = play_whole(*make_effect(crossfeed), first);
    apart.push_back(play_whole(*make_effect(crossfeed), second)[0]);
    EXPECT_TRUE(are_equal(play_whole(*effect, both), apart));
}

TEST(Crossfeed, TheFilterRunsAcrossBlocksTracksAndPlaybacks) {
    random_source random(1);
    const programme first = noise_in({{44100, 2, 0x3}}, 500, 0.9, random);
    const programme second = noise_in({{44100, 2, 0x3}}, 500, 0.9, random);
    programme both = first;
    join(both, second);
    const programme whole = play_whole(*make_effect(crossfeed), both);
    for (const std::uint32_t flags : {0U, 1U, 2U, 3U}) {
        const auto effect = make_effect(crossfeed);
        programme out = play(*effect, first, {100, 1}, flags, random);
        join(out, play(*effect, second, {100, 1}, flags, random));
        EXPECT_TRUE(are_equal(out, whole)) << flags;
    }
}

TEST(Crossfeed, ABlockWithoutARatePassesUnchangedWhereNothingTakesItOut) {
    random_source random(1);
    const programme first = noise_in({{44100, 2, 0x3}}, 100, 0.9, random);
    const programme second = noise_in({{44100, 2, 0x3}}, 100, 0.9, random);
    const auto effect = make_effect(crossfeed);
    const auto undisturbed = make_effect(crossfeed);
    const std::vector<double> samples{0.5, -0.5, 0.25, 0.75};
    for (const programme& played : {programme{}, first, second}) { // as the first block, and within a stream
        EXPECT_TRUE(are_equal(play_whole(*effect, played), play_whole(*undisturbed, played)));
        strict_block block(samples, {0, 2, 0x3});
        EXPECT_TRUE(effect->on_block(&block, nullptr));
        EXPECT_EQ(block.changes(), 0);
        EXPECT_EQ(block.samples(), samples);
    }
}

TEST(Crossfeed, ASampleThatIsNotANumberSticksUntilAFlush) {
    random_source random(1);
    const auto effect = make_effect(crossfeed);
    programme spoilt = noise_in({{44100, 2, 0x3}}, 100, 0.9, random);
    spoilt[0].samples[20] = std::nan("");
    EXPECT_TRUE(std::isnan(play_whole(*effect, spoilt)[0].samples.back()));
    effect->flush();
    const programme clean = noise_in({{44100, 2, 0x3}}, 100, 0.9, random);
    EXPECT_TRUE(are_equal(play_whole(*effect, clean), play_whole(*make_effect(crossfeed), clean)));
}

} // namespace
