#include "effects/resampler_sinc/sinc_table_core.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace kelvane {
namespace {

constexpr double pi = std::numbers::pi;

struct designed_table {
    designed_table(const sinc_quality& quality, double ratio)
        : design(design_sinc(quality, ratio)), floats(design.table_floats()) {
        fill_sinc_table(design, floats);
    }

    float coefficient(std::size_t phase, std::size_t tap) const { return floats[phase * design.row_floats() + tap]; }
    float delta(std::size_t phase, std::size_t tap) const {
        return floats[phase * design.row_floats() + design.taps + tap];
    }

    sinc_design design;
    std::vector<float> floats;
};

constexpr double ratios[] = {48000.0 / 44100.0, 1.0, 44100.0 / 48000.0, 0.3};

double sinc(double x) {
    return x == 0.0 ? 1.0 : std::sin(x) / x;
}

/// With the standard library's Bessel function.
double window_at(const sinc_quality& quality, double x) {
    if (quality.window == sinc_window::lanczos) {
        return sinc(pi * x);
    }
    const auto beta = static_cast<double>(quality.kaiser_beta);
    return std::cyl_bessel_i(0.0, beta * std::sqrt(1.0 - x * x)) / std::cyl_bessel_i(0.0, beta);
}

TEST(SincTable, HoldsAWindowedSinc) {
    for (const sinc_quality& quality : sinc_qualities) {
        for (const double ratio : ratios) {
            const designed_table table(quality, ratio);
            const double taps = table.design.taps;
            const double cutoff = quality.cutoff * std::fmin(1.0, ratio);
            for (std::size_t phase = 0; phase < table.design.phases; phase += 37) {
                for (std::size_t tap = 0; tap < table.design.taps; ++tap) {
                    const double frames = static_cast<double>(tap) - taps / 2.0 +
                                          static_cast<double>(phase) / static_cast<double>(table.design.phases);
                    const double expected = cutoff * sinc(pi * cutoff * frames) * window_at(quality, 2 * frames / taps);
                    ASSERT_NEAR(static_cast<double>(table.coefficient(phase, tap)), expected, 2e-6 * cutoff)
                        << quality.name << ", ratio " << ratio << ", phase " << phase << ", tap " << tap;
                }
            }
        }
    }
}

/// The place one phase behind the last is the first phase of the next tap.
TEST(SincTable, DeltasLeadToTheNextPhase) {
    for (const sinc_quality& quality : sinc_qualities) {
        if (quality.window != sinc_window::kaiser) {
            continue;
        }
        const designed_table table(quality, 0.9);
        const std::size_t last = table.design.phases - 1;
        for (std::size_t tap = 0; tap + 1 < table.design.taps; ++tap) {
            for (std::size_t phase = 0; phase < last; ++phase) {
                ASSERT_EQ(table.delta(phase, tap), table.coefficient(phase + 1, tap) - table.coefficient(phase, tap))
                    << quality.name << ", phase " << phase << ", tap " << tap;
            }
            ASSERT_EQ(table.delta(last, tap), table.coefficient(0, tap + 1) - table.coefficient(last, tap))
                << quality.name << ", tap " << tap;
        }
    }
}

/// Behind the last phase of the last tap the window ends, where the Kaiser windows have 1 ÷ I0(beta) left.
TEST(SincTable, TheLastDeltaLeadsToTheEndOfTheWindow) {
    for (const sinc_quality& quality : sinc_qualities) {
        if (quality.window != sinc_window::kaiser) {
            continue;
        }
        const designed_table table(quality, 1.0);
        const std::size_t phase = table.design.phases - 1;
        const std::size_t tap = table.design.taps - 1;
        const double angle = pi * quality.cutoff * quality.sidelobes;
        const double end = quality.cutoff * std::sin(angle) / angle * window_at(quality, 1.0);
        const auto last = static_cast<double>(table.coefficient(phase, tap));
        EXPECT_NEAR(static_cast<double>(table.delta(phase, tap)), end - last, 1e-5 * std::fabs(end)) << quality.name;
    }
}

TEST(SincTable, KeepsTheLevelOfAConstant) {
    struct row {
        std::size_t quality;
        double tolerance;
    };
    // The shorter the filter, the more its gain depends on the phase.
    for (const row& expected : {row{0, 0.03}, {1, 0.005}, {2, 0.001}, {3, 1e-5}, {4, 1e-5}}) {
        const designed_table table(sinc_qualities[expected.quality], 1.0);
        for (std::size_t phase = 0; phase < table.design.phases; ++phase) {
            double gain = 0.0;
            for (std::size_t tap = 0; tap < table.design.taps; ++tap) {
                gain += static_cast<double>(table.coefficient(phase, tap));
            }
            ASSERT_NEAR(gain, 1.0, expected.tolerance) << sinc_qualities[expected.quality].name << ", phase " << phase;
        }
    }
}

TEST(SincTable, FilterLengths) {
    struct row {
        std::size_t quality;
        double ratio;
        std::uint32_t taps;
    };
    const row rows[] = {
        {0, 1.0, 4},
        {1, 2.0, 8},
        {2, 48000.0 / 44100.0, 16},
        {3, 1.0, 64},
        {4, 1.0, 256},
        {0, 8000.0 / 96000.0, 48},    // 4 x 12
        {2, 44100.0 / 48000.0, 20},   // 17.4: 18, and on to a multiple of 4
        {4, 44100.0 / 48000.0, 280},  // 278.6: 279
        {3, 44100.0 / 176400.0, 256}, // 64 x 4
    };
    for (const row& expected : rows) {
        EXPECT_EQ(design_sinc(sinc_qualities[expected.quality], expected.ratio).taps, expected.taps)
            << sinc_qualities[expected.quality].name << ", ratio " << expected.ratio;
    }
}

TEST(SincQuality, TheLevels) {
    struct row {
        std::string name;
        std::string description;
        double cutoff;
        std::uint32_t sidelobes;
        std::uint32_t phase_bits;
        std::uint32_t subphase_bits;
        std::uint32_t window; ///< 1 Kaiser, 2 Lanczos
        float kaiser_beta;
    };
    const std::vector<row> rows{
        {"Lowest", "Fastest sinc interpolation, SNR about 40 dB", 0.98, 2, 12, 10, 2, 0.0F},
        {"Lower", "Faster sinc interpolation, SNR about 55 dB", 0.98, 4, 12, 10, 2, 0.0F},
        {"Normal", "Fast sinc interpolation, SNR about 70 dB", 0.825, 8, 8, 16, 1, 5.5F},
        {"Higher", "Higher quality sinc interpolation, SNR about 110 dB", 0.9, 32, 10, 14, 1, 10.5F},
        {"Highest", "Highest quality sinc interpolation, SNR about 140 dB", 0.962, 128, 10, 14, 1, 14.5F},
    };
    ASSERT_EQ(sinc_qualities.size(), rows.size());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const sinc_quality& quality = sinc_qualities[index];
        const row& expected = rows[index];
        EXPECT_EQ(quality.name, expected.name) << index;
        EXPECT_EQ(quality.description, expected.description) << index;
        EXPECT_EQ(quality.cutoff, expected.cutoff) << index;
        EXPECT_EQ(quality.sidelobes, expected.sidelobes) << index;
        EXPECT_EQ(quality.phase_bits, expected.phase_bits) << index;
        EXPECT_EQ(quality.subphase_bits, expected.subphase_bits) << index;
        EXPECT_EQ(static_cast<std::uint32_t>(quality.window), expected.window) << index;
        EXPECT_EQ(quality.kaiser_beta, expected.kaiser_beta) << index;
    }
}

TEST(SincQuality, AnIndexThatHasNoLevelMeansNormal) {
    EXPECT_STREQ(sinc_quality_at(4).name, "Highest");
    for (const std::uint32_t index : {5U, 7U, 0xFFFFFFFFU}) {
        EXPECT_STREQ(sinc_quality_at(index).name, "Normal") << index;
    }
}

} // namespace
} // namespace kelvane
