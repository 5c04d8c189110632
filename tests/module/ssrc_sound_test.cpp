// What "Resampler (dBpoweramp/SSRC)" does to tones, impulses and what is no number.
#include "tests/module/run_effect.h"
#include "tests/module/ssrc_preset.h"
#include "tests/resampler_ssrc/conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

/// The delay that is left: the filters' own, less the whole frames that are discarded.
struct delayed_pair {
    rate_pair rates;
    double delay_frames; ///< of the output
};

/// The long filter has 16383 taps everywhere here, so it delays by 8191 frames of its own rate.
constexpr delayed_pair delayed_pairs[] = {
    {{44100, 48000}, 8191.0 / 3 - 2730}, // runs at 3 x 48000; floor(16383 / 6) are discarded
    {{44100, 88200}, 0.0},               // at 88200; floor(16383 / 2)
    {{48000, 96000}, 0.0},
    // At 3 x 48000, and 35 frames ahead of the stage: of 49 phases each, less half the 1659 taps, in steps of 160.
    {{48000, 44100}, ((8191.0 + 35) * 49 - 829) / 160 - 2513},
    {{96000, 48000}, (8191.0 + 2) / 2 - 4096},
};

double tone(double frame, double frequency_hz, std::uint32_t rate_hz) {
    return 0.5 * std::sin(2.0 * std::numbers::pi * frequency_hz * frame / rate_hz);
}

TEST(SsrcSound, ATonePassesAsItIs) {
    random_source random(1);
    for (const auto& [rates, delay_frames] : delayed_pairs) {
        programme played{{{rates.input_hz, 2, 0x3}, std::vector<double>(2 * rates.input_hz)}};
        const double frequencies_hz[] = {997.0, 15'000.0};
        for (std::size_t i = 0; i < played[0].samples.size(); ++i) {
            played[0].samples[i] = tone(static_cast<double>(i / 2), frequencies_hz[i % 2], rates.input_hz);
        }
        const programme out = play(*make_ssrc(rates.output_hz), played, {3000, 3}, end_of_playback, random);
        ASSERT_EQ(out.size(), 1U) << rates;
        EXPECT_EQ(out[0].format, (block_format{rates.output_hz, 2, 0x3})) << rates;
        ASSERT_EQ(out[0].frames(), rates.output_hz) << rates;
        double worst = 0.0;
        for (std::size_t i = rates.output_hz / 2; i < 3 * rates.output_hz / 2; ++i) { // away from both ends
            const double expected =
                tone(static_cast<double>(i / 2) - delay_frames, frequencies_hz[i % 2], rates.output_hz);
            worst = std::max(worst, std::abs(out[0].samples[i] - expected));
        }
        EXPECT_LT(worst, 1e-7) << rates;
    }
}

TEST(SsrcSound, AnImpulseStaysInItsPlace) {
    random_source random(2);
    for (const auto& [rates, delay_frames] : delayed_pairs) {
        const std::size_t place = pick(random, 10'000, 20'000);
        programme played{{{rates.input_hz, 1, 0x4}, std::vector<double>(30'000)}};
        played[0].samples[place] = 1.0;
        const programme out = play(*make_ssrc(rates.output_hz), played, {3000, 3}, end_of_playback, random);
        const std::vector<double>& samples = out.at(0).samples;
        const auto peak = std::max_element(samples.begin(), samples.end()) - samples.begin();
        const double expected = static_cast<double>(place) * rates.output_hz / rates.input_hz + delay_frames;
        EXPECT_LE(std::abs(static_cast<double>(peak) - expected), 0.5 + 1e-9) << rates;
    }
}

TEST(SsrcSound, WhatIsNoNumberGoesNoFurtherThanTheFiltersReach) {
    constexpr std::size_t frames = 60'000;
    constexpr std::size_t place = 20'000;
    random_source random(3);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, rate_pair{48000, 44100}}) {
        const programme clean = noise_in({{rates.input_hz, 2, 0x3}}, frames, 0.9, random);
        const programme expected = play_whole(*make_ssrc(rates.output_hz), clean);
        for (const double strange : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                     std::numeric_limits<double>::max()}) {
            programme spoilt = clean;
            spoilt[0].samples[2 * place] = strange;
            const programme out = play(*make_ssrc(rates.output_hz), spoilt, {3000, 3}, end_of_playback, random);
            ASSERT_EQ(frames_of(out), frames_of(expected)) << rates;
            // Two blocks of the long filter, each of 16384 frames at three times 48000 Hz.
            const std::size_t reach = 2 * 16384 / 3;
            const std::size_t middle = place * rates.output_hz / rates.input_hz;
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < out[0].samples.size(); ++i) {
                const bool is_beyond = i % 2 == 1 || i / 2 + reach < middle || i / 2 > middle + reach;
                wrong += is_beyond && out[0].samples[i] != expected[0].samples[i] ? 1U : 0U;
            }
            EXPECT_EQ(wrong, 0U) << rates << ", " << strange;
            EXPECT_NE(out[0].samples[2 * middle], expected[0].samples[2 * middle]) << rates << ", " << strange;
        }
    }
}

} // namespace
