// What a listener could hear of a conversion. All pairs are measured by the sweep (docs/converter_pairs.md).
#include "tests/resampler_ssrc/measurements.h"

#include <gtest/gtest.h>

#include <cmath>

namespace testing_support {
namespace {

constexpr double tone_s = 0.3;

TEST(ConverterQuality, TonesInTheBandPassAsTheyAre) {
    for (const rate_pair& rates : sampled_pairs()) {
        const std::uint32_t pass_hz = edges_of(rates).pass_hz;
        for (const std::uint32_t frequency_hz : {20U, 997U, 15000U, pass_hz / 2, pass_hz - 25, pass_hz - 1}) {
            if (frequency_hz >= pass_hz) {
                continue;
            }
            const tone_result tone = measure_tone(rates, frequency_hz, tone_s);
            EXPECT_LT(std::abs(tone.gain_db), 1e-5) << rates << ", " << frequency_hz << " Hz";
            // At the very edge of the stop band, where an image of the last tone lies, the attenuation is less.
            EXPECT_LT(tone.rest_db, frequency_hz + 1 == pass_hz ? -120.0 : -170.0)
                << rates << ", " << frequency_hz << " Hz";
        }
    }
}

TEST(ConverterQuality, ImagesAndAliasesAreGone) {
    for (const rate_pair& rates : sampled_pairs()) {
        const std::uint32_t stop_hz = edges_of(rates).stop_hz;
        if (rates.output_hz > rates.input_hz) {
            const tone_result tone = measure_tone(rates, rates.input_hz - stop_hz, tone_s);
            EXPECT_LT(tone.rest_db, -170.0) << rates;
            continue;
        }
        for (const std::uint32_t frequency_hz : {stop_hz, stop_hz + 1000, (stop_hz + rates.input_hz / 2) / 2}) {
            if (frequency_hz < rates.input_hz / 2) {
                EXPECT_LT(measure_rest_db(rates, frequency_hz, tone_s), -170.0)
                    << rates << ", " << frequency_hz << " Hz";
            }
        }
    }
}

TEST(ConverterQuality, TheOutputIsInTimeWithTheInput) {
    for (const rate_pair& rates : sampled_pairs()) {
        const double delay_frames = measure_tone(rates, 997, tone_s).delay_frames;
        EXPECT_GE(delay_frames, -1e-6) << rates;
        EXPECT_LT(delay_frames, rates.output_hz > rates.input_hz ? 0.500001 : 1.31) << rates;
        EXPECT_NEAR(measure_impulse(rates).delay_frames, delay_frames, 1e-6) << rates;
    }
}

TEST(ConverterQuality, TheResponseToAnImpulseIsSymmetric) {
    for (const rate_pair& rates : sampled_pairs()) {
        EXPECT_LT(measure_impulse(rates).asymmetry, 4e-16) << rates;
    }
}

} // namespace
} // namespace testing_support
