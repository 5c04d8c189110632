#include "effects/channels/layout_core.h"

#include "effects/channels/layout_settings.h"
#include "tests/support/literal_layout.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <set>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

weight_rows layout(std::uint32_t input_mask, std::uint32_t target_mask) {
    const channel_matrix matrix =
        make_layout_matrix(input_mask, static_cast<std::size_t>(std::popcount(input_mask)), target_mask);
    weight_rows made(matrix.outputs(), std::vector<double>(matrix.inputs()));
    for (std::size_t output = 0; output < matrix.outputs(); ++output) {
        for (std::size_t input = 0; input < matrix.inputs(); ++input) {
            made[output][input] = matrix.weight(output, input);
        }
    }
    return made;
}

/// Weights of three digits or so, for tables by hand.
void expect_near(const weight_rows& found, const weight_rows& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t output = 0; output < found.size(); ++output) {
        ASSERT_EQ(found[output].size(), expected[output].size());
        for (std::size_t input = 0; input < found[output].size(); ++input) {
            EXPECT_NEAR(found[output][input], expected[output][input], 1e-15) << output << ", " << input;
        }
    }
}

TEST(Layout, SurroundToStereo) {
    expect_near(layout(0x3F, 0x3), {{0.4, 0, 0.2, 0, 0.4, 0}, {0, 0.4, 0.2, 0, 0, 0.4}});
    expect_near(layout(0x60F, 0x3), {{0.4, 0, 0.2, 0, 0.4, 0}, {0, 0.4, 0.2, 0, 0, 0.4}});
    // 7.1: back and side both come to the front, 1 + 0.5 + 1 + 1.
    const double s = 1.0 / 3.5;
    expect_near(layout(0x63F, 0x3), {{s, 0, s / 2, 0, s, 0, s, 0}, {0, s, s / 2, 0, 0, s, 0, s}});
}

TEST(Layout, AnythingToMonoIsTheMean) {
    expect_near(layout(0x3, 0x4), {{0.5, 0.5}});
    expect_near(layout(0x3F, 0x4), {std::vector<double>(6, 1.0 / 6.0)});
    expect_near(layout(0x63F, 0x4), {std::vector<double>(8, 0.125)});
}

TEST(Layout, EvenChannelsWithoutASpeakerCountForMonoAndForNothingElse) {
    const auto weights = [](std::uint32_t target_mask) {
        const channel_matrix matrix = make_layout_matrix(0, 32, target_mask);
        std::set<double> found;
        for (std::size_t output = 0; output < matrix.outputs(); ++output) {
            for (std::size_t input = 0; input < 32; ++input) {
                found.insert(matrix.weight(output, input));
            }
        }
        return found;
    };
    EXPECT_EQ(weights(0x4), std::set<double>{1.0 / 32.0});
    EXPECT_EQ(weights(0x3), std::set<double>{0.0});
}

TEST(Layout, SevenToFiveSplitsTheSides) {
    const double f = 2.0 / 3.0;
    const double t = 1.0 / 3.0;
    expect_near(layout(0x63F, 0x3F), {{f, 0, 0, 0, 0, 0, t, 0},
                                      {0, f, 0, 0, 0, 0, 0, t},
                                      {0, 0, f, 0, 0, 0, 0, 0},
                                      {0, 0, 0, f, 0, 0, 0, 0},
                                      {0, 0, 0, 0, f, 0, t, 0},
                                      {0, 0, 0, 0, 0, f, 0, t}});
}

TEST(Layout, SidesAndBackStandInForEachOther) {
    const weight_rows identity{{1, 0, 0, 0, 0, 0}, {0, 1, 0, 0, 0, 0}, {0, 0, 1, 0, 0, 0},
                               {0, 0, 0, 1, 0, 0}, {0, 0, 0, 0, 1, 0}, {0, 0, 0, 0, 0, 1}};
    expect_near(layout(0x3F, 0x60F), identity);
    expect_near(layout(0x60F, 0x3F), identity);
}

TEST(Layout, ASmallerLayoutGetsSilentSpeakers) {
    expect_near(layout(0x3, 0x3F), {{1, 0}, {0, 1}, {0, 0}, {0, 0}, {0, 0}, {0, 0}});
    expect_near(layout(0x4, 0x3F), {{0}, {0}, {1}, {0}, {0}, {0}});
    expect_near(layout(0x4, 0x3), {{0.5}, {0.5}});
}

TEST(Layout, ABackCentreGoesToTheBackPairOrNowhere) {
    expect_near(layout(0x103, 0x33), {{1, 0, 0}, {0, 1, 0}, {0, 0, 0.5}, {0, 0, 0.5}});
    expect_near(layout(0x103, 0x3), {{1, 0, 0}, {0, 1, 0}});
}

TEST(Layout, SpeakersBesideTheCentre) {
    const double f = 2.0 / 3.0;
    const double t = 1.0 / 3.0;
    // To front and centre: 1 + 0.5 for the sides; the centre itself gets 0.5 + 0.5.
    expect_near(layout(0xC3, 0x7), {{f, 0, t, 0}, {0, f, 0, t}, {0, 0, t, t}});
    expect_near(layout(0xC3, 0xC), {{0, 0, 0.5, 0.5}, {0, 0, 0, 0}});
    expect_near(layout(0xC3, 0x3), {{0.5, 0, 0.5, 0}, {0, 0.5, 0, 0.5}});
    expect_near(layout(0xC3, 0x8), {{0, 0, 0, 0}});
}

TEST(Layout, TopSpeakersAndLowFrequencyAreDropped) {
    expect_near(layout(0x280B, 0x3), {{1, 0, 0, 0, 0}, {0, 1, 0, 0, 0}});
}

TEST(Layout, AnyMaskToAnyOtherAsTheRulesSay) {
    random_source random(1);
    for (int round = 0; round < 20'000; ++round) {
        const std::uint32_t all = round % 4 == 0 ? 0x3FFFFU : 0x7FFU;
        const auto input_mask = static_cast<std::uint32_t>(random()) & all;
        const auto target_mask = static_cast<std::uint32_t>(random()) & all;
        ASSERT_EQ(layout(input_mask, target_mask), literal_layout_matrix(input_mask, target_mask))
            << input_mask << " to " << target_mask;
    }
}

TEST(Layout, NoOutputIsEverLouderThanTheLoudestInput) {
    random_source random(2);
    for (int round = 0; round < 5000; ++round) {
        const auto rows =
            layout(static_cast<std::uint32_t>(random()) & 0x7FFU, static_cast<std::uint32_t>(random()) & 0x7FFU);
        for (const auto& row : rows) {
            double sum = 0.0;
            for (const double weight : row) {
                EXPECT_GE(weight, 0.0);
                sum += weight;
            }
            EXPECT_LE(sum, 1.0 + 1e-15);
        }
    }
}

TEST(LayoutSettings, TheMaskIsReadFromExactlyFourBytes) {
    const std::vector<std::byte> bytes{std::byte{0x3F}, std::byte{6}, std::byte{0}, std::byte{0x80}, std::byte{0}};
    const auto read = [&](std::size_t size) { return layout_settings::read({bytes.data(), size}).target_mask; };
    EXPECT_EQ(read(4), 0x8000063FU);
    for (const std::size_t size : {0U, 1U, 2U, 3U, 5U}) {
        EXPECT_EQ(read(size), 0U) << size;
    }
    EXPECT_EQ(layout_settings{0x8000063F}.write(), std::vector<std::byte>(bytes.begin(), bytes.begin() + 4));
}

} // namespace
} // namespace kelvane
