#include "effects/resampler_ssrc/filter_design.h"
#include "effects/resampler_ssrc/kaiser_window.h"
#include "tests/resampler_ssrc/conversions.h"
#include "tests/resampler_ssrc/plain_filters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace kelvane::ssrc {
namespace {

using testing_support::usual_quality;

TEST(KaiserWindow, TheTransitionFactorHasTwoRegimes) {
    EXPECT_EQ(transition_factor(10.0), 0.9222);
    EXPECT_EQ(transition_factor(21.0), 0.9222);
    EXPECT_NEAR(transition_factor(21.1), 0.915738, 1e-6); // (21.1 - 7.95) / 14.36
    EXPECT_NEAR(transition_factor(170.0), 11.2848189, 1e-7);
}

TEST(KaiserWindow, TheBesselFunctionIsThatOfTheTables) {
    EXPECT_EQ(bessel_i0(0.0), 1.0);
    EXPECT_NEAR(bessel_i0(1.0), 1.2660658777520084, 1e-15); // Abramowitz and Stegun, table 9.8
    EXPECT_NEAR(bessel_i0(5.0), 27.239871823604442, 1e-13);
    // The series ends at the 16th term; at the converter's alpha 0.14 % are missing.
    EXPECT_NEAR(bessel_i0(17.77526) / std::cyl_bessel_i(0.0, 17.77526), 0.9986, 0.0001);
}

/// alpha from the window itself: at the edge it is 1 / I0(alpha).
TEST(KaiserWindow, AlphaHasThreeRegimes) {
    struct row {
        double attenuation_db;
        double alpha;
    };
    for (const row& expected : {row{15.0, 0.0}, row{21.0, 0.0}, row{40.0, 3.395321}, row{50.0, 4.533514},
                                row{60.0, 5.65326}, row{170.0, 17.77526}}) {
        const kaiser_window window(expected.attenuation_db, 101);
        EXPECT_NEAR(window(50) * bessel_i0(expected.alpha), 1.0, 1e-5) << expected.attenuation_db;
        EXPECT_EQ(window(0), 1.0) << expected.attenuation_db;
        EXPECT_EQ(window(-20), window(20)) << expected.attenuation_db;
    }
}

TEST(FilterDesign, LengthsAndCutoffs) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t output_hz;
        std::int64_t long_length;
        std::int64_t stage_length;
        double stage_cutoff_hz;
    };
    // Going down, 288000 x 11.2848 / 16382 = 198.4 Hz is too wide, so the length doubles.
    for (const row& expected : {row{44100, 48000, 16383, 1595, 47025.0}, row{48000, 44100, 16383, 1659, 48000.0},
                                row{96000, 44100, 32767, 1659, 96000.0}, row{44100, 96000, 32767, 1307, 83025.0},
                                row{96000, 48000, 16383, 1, 48000.0}}) {
        const auto plan = plan_rates(expected.input_hz, expected.output_hz).value();
        const low_pass filter = design_long_filter(plan, usual_quality);
        const low_pass stage = design_polyphase_filter(plan, usual_quality);
        EXPECT_EQ(filter.length, expected.long_length) << expected.input_hz << " -> " << expected.output_hz;
        EXPECT_EQ(stage.length, expected.stage_length) << expected.input_hz << " -> " << expected.output_hz;
        EXPECT_EQ(stage.cutoff_hz, expected.stage_cutoff_hz) << expected.input_hz << " -> " << expected.output_hz;
    }
}

TEST(FilterDesign, AShortTransitionBandDoublesTheLongFilter) {
    const auto plan = plan_rates(96000, 48000).value();
    converter_quality quality = usual_quality;
    for (const std::uint32_t base : {16384U, 1000U, 1001U}) {
        quality.down_filter_taps = base;
        const low_pass filter = design_long_filter(plan, quality);
        const auto width_hz = [](std::int64_t length) {
            return 96000.0 * 11.28481894 / static_cast<double>(length - 1);
        };
        EXPECT_EQ(filter.length % 2, 1) << base;
        EXPECT_LT(width_hz(filter.length), 100.0) << base;
        EXPECT_TRUE(filter.length / 2 < base || width_hz(filter.length / 2) >= 100.0) << base;
        EXPECT_NEAR(filter.cutoff_hz, (48000.0 - width_hz(filter.length)) / 2.0, 1e-6) << base;
    }
}

TEST(FilterDesign, TheTapsAreThoseOfTheFormulas) {
    for (const testing_support::rate_pair& rates : testing_support::sampled_pairs()) {
        const plain_form::design design(rates.input_hz, rates.output_hz);
        const std::vector<double> expected = design.filter();
        const auto plan = plan_rates(rates.input_hz, rates.output_hz).value();
        const double gain = design.goes_up ? 1.0 : static_cast<double>(design.osf);
        const auto taps = design_long_filter(plan, usual_quality).taps(gain);
        ASSERT_EQ(taps.size(), expected.size()) << rates;
        for (std::size_t n = 0; n < taps.size(); ++n) {
            ASSERT_NEAR(taps[n], expected[n], 1e-15) << rates << " tap " << n;
        }
        EXPECT_NEAR(std::accumulate(taps.data(), taps.data() + taps.size(), 0.0), gain, 1e-6) << rates;
    }
}

} // namespace
} // namespace kelvane::ssrc
