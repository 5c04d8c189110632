#include "effects/resampler_ssrc/rate_plan.h"
#include "tests/resampler_ssrc/conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace kelvane::ssrc {
namespace {

TEST(RatePlan, SettlesTheIntermediateRates) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t output_hz;
        std::uint32_t common_hz;
        std::uint32_t osf;
        std::uint32_t filter_hz;
    };
    for (const row& expected :
         {row{44100, 48000, 7056000, 3, 144000}, row{48000, 44100, 7056000, 3, 144000},
          row{44100, 96000, 14112000, 3, 288000}, row{48000, 32000, 96000, 2, 96000},
          row{96000, 48000, 96000, 1, 96000}, row{48000, 96000, 96000, 1, 96000}, row{32000, 48000, 96000, 2, 96000},
          row{8000, 11025, 3528000, 2, 22050}, row{3, 2, 6, 2, 6}, row{44100, 48001, 2116844100, 2, 96002},
          row{1, 2, 2, 1, 2}, row{2147483647, 1, 2147483647, 1, 2147483647}}) {
        const auto plan = plan_rates(expected.input_hz, expected.output_hz);
        ASSERT_TRUE(plan) << expected.input_hz << " -> " << expected.output_hz;
        EXPECT_EQ(plan->common_hz, expected.common_hz) << expected.input_hz << " -> " << expected.output_hz;
        EXPECT_EQ(plan->osf, expected.osf) << expected.input_hz << " -> " << expected.output_hz;
        EXPECT_EQ(plan->filter_hz(), expected.filter_hz) << expected.input_hz << " -> " << expected.output_hz;
    }
}

TEST(RatePlan, RefusesOddRatiosWithoutAThreeAndRatesBeyond31Bits) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t output_hz;
    };
    for (const row& refused : {row{48000, 35000}, row{35000, 48000}, row{12000, 352800}, row{352800, 12000},
                               row{44101, 48000}, row{48000, 44101}, // k = 44101 has no three
                               row{44740, 48001}, row{48001, 44740}, // k is even, the common rate 2147564740
                               row{2147483648U, 1}, row{4294967295U, 2}}) {
        EXPECT_FALSE(plan_rates(refused.input_hz, refused.output_hz))
            << refused.input_hz << " -> " << refused.output_hz;
    }
}

TEST(RatePlan, OfTheCommonRatesOnlyOnePairIsRefused) {
    for (const std::uint32_t input_hz : testing_support::common_rates_hz) {
        for (const std::uint32_t output_hz : testing_support::common_rates_hz) {
            const bool is_refused =
                (input_hz == 12000 && output_hz == 352800) || (input_hz == 352800 && output_hz == 12000);
            EXPECT_EQ(plan_rates(input_hz, output_hz).has_value(), !is_refused) << input_hz << " -> " << output_hz;
        }
    }
}

/// The rules once more, by trying all divisors.
bool slow_rules(std::uint64_t input_hz, std::uint64_t output_hz) {
    std::uint64_t divisor = 1;
    for (std::uint64_t d = 1; d <= std::min(input_hz, output_hz); ++d) {
        if (input_hz % d == 0 && output_hz % d == 0) {
            divisor = d;
        }
    }
    const std::uint64_t k = std::min(input_hz, output_hz) / divisor;
    const bool is_ratio_fine = k == 1 || k % 2 == 0 || k % 3 == 0;
    return is_ratio_fine && input_hz / divisor * output_hz < 2147483648U;
}

TEST(RatePlan, FollowsTheRulesForAnyPair) {
    testing_support::random_source random(1);
    int accepted = 0;
    for (int i = 0; i < 2000; ++i) {
        const auto input_hz = static_cast<std::uint32_t>(testing_support::pick(random, 1, 60000));
        const auto output_hz = static_cast<std::uint32_t>(testing_support::pick(random, 1, 60000));
        const bool expected = slow_rules(input_hz, output_hz);
        EXPECT_EQ(plan_rates(input_hz, output_hz).has_value(), expected) << input_hz << " -> " << output_hz;
        accepted += expected ? 1 : 0;
    }
    EXPECT_GT(accepted, 200);
    EXPECT_LT(accepted, 1800);
}

} // namespace
} // namespace kelvane::ssrc
