#include "effects/channels/default_mask_core.h"
#include "effects/channels/upmix_core.h"

#include "tests/support/literal_layout.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <bit>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelvane {
namespace {

using rows = std::vector<std::vector<double>>;

rows rows_of(const channel_matrix& matrix) {
    rows made(matrix.outputs(), std::vector<double>(matrix.inputs()));
    for (std::size_t output = 0; output < matrix.outputs(); ++output) {
        for (std::size_t input = 0; input < matrix.inputs(); ++input) {
            made[output][input] = matrix.weight(output, input);
        }
    }
    return made;
}

std::optional<rows> upmix(std::uint32_t input_mask, std::uint32_t target_mask) {
    const auto matrix = make_upmix_matrix(input_mask, static_cast<std::size_t>(std::popcount(input_mask)), target_mask);
    return matrix ? std::optional(rows_of(*matrix)) : std::nullopt;
}

TEST(Upmix, TheCommonLayoutsTo51) {
    EXPECT_EQ(upmix(0x4, 0x3F), (rows{{1}, {1}, {1}, {0}, {1}, {1}}));
    EXPECT_EQ(upmix(0x3, 0x3F), (rows{{1, 0}, {0, 1}, {0.5, 0.5}, {0, 0}, {1, 0}, {0, 1}}));
    EXPECT_EQ(upmix(0x33, 0x3F),
              (rows{{1, 0, 0, 0}, {0, 1, 0, 0}, {0.5, 0.5, 0, 0}, {0, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}));
}

TEST(Upmix, TheCommonLayoutsTo71) {
    EXPECT_EQ(upmix(0x4, 0x63F), (rows{{1}, {1}, {1}, {0}, {1}, {1}, {1}, {1}}));
    EXPECT_EQ(upmix(0x3, 0x63F), (rows{{1, 0}, {0, 1}, {0.5, 0.5}, {0, 0}, {1, 0}, {0, 1}, {1, 0}, {0, 1}}));
    EXPECT_EQ(upmix(0x33, 0x63F), (rows{{1, 0, 0, 0},
                                        {0, 1, 0, 0},
                                        {0.5, 0.5, 0, 0},
                                        {0, 0, 0, 0},
                                        {0, 0, 1, 0},
                                        {0, 0, 0, 1},
                                        {0.5, 0, 0.5, 0},
                                        {0, 0.5, 0, 0.5}}));
    EXPECT_EQ(upmix(0x3F, 0x63F), (rows{{1, 0, 0, 0, 0, 0},
                                        {0, 1, 0, 0, 0, 0},
                                        {0, 0, 1, 0, 0, 0},
                                        {0, 0, 0, 1, 0, 0},
                                        {0, 0, 0, 0, 1, 0},
                                        {0, 0, 0, 0, 0, 1},
                                        {0.5, 0, 0, 0, 0.5, 0},
                                        {0, 0.5, 0, 0, 0, 0.5}}));
}

TEST(Upmix, ARearPairAloneLeavesTheFrontSilent) {
    EXPECT_EQ(upmix(0x30, 0x3F), (rows{{0, 0}, {0, 0}, {0, 0}, {0, 0}, {1, 0}, {0, 1}}));
}

TEST(Upmix, OneFrontSpeakerIsItsSideAndTheOtherSideIsSilent) {
    EXPECT_EQ(upmix(0x1, 0x3F), (rows{{1}, {0}, {0}, {0}, {1}, {0}}));
    EXPECT_EQ(upmix(0x2, 0x63F), (rows{{0}, {1}, {0}, {0}, {0}, {1}, {0}, {1}}));
    EXPECT_EQ(upmix(0x5, 0x3F), (rows{{1, 0}, {0, 1}, {0, 1}, {0, 0}, {1, 0}, {0, 1}})); // the centre stands in
}

TEST(Upmix, WhatTheTargetLacksIsNotDropped) {
    EXPECT_FALSE(upmix(0x63F, 0x3F));
    EXPECT_FALSE(upmix(0x60F, 0x3F));
    EXPECT_FALSE(upmix(0x103, 0x3F)); // a back centre
    EXPECT_FALSE(upmix(0x803, 0x63F));
    EXPECT_FALSE(upmix(0x10B, 0x33));
    EXPECT_FALSE(upmix(0xF, 0x33)); // the centre might go, but not the low-frequency channel with it
    EXPECT_FALSE(upmix(0x84, 0x33));
}

// Other targets show the rules that the two effects never reach.
TEST(Upmix, AFrontCentreWithoutAPlaceMayGo) {
    EXPECT_EQ(upmix(0x4, 0x3), (rows{{1}, {1}}));
    EXPECT_EQ(upmix(0x7, 0x33), (rows{{1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 1, 0}}));
}

TEST(Upmix, ABackCentreFeedsAnAbsentBackPair) {
    EXPECT_EQ(upmix(0x103, 0x133), (rows{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}}));
}

TEST(Upmix, ABackPairFeedsAnAbsentBackCentre) {
    EXPECT_EQ(upmix(0x30, 0x130), (rows{{1, 0}, {0, 1}, {0.5, 0.5}}));
    EXPECT_EQ(upmix(0x10, 0x110), (rows{{1}, {0}})); // half a pair is none
}

TEST(Upmix, TopSpeakersLieBetweenTheirPairs) {
    EXPECT_EQ(upmix(0x5000, 0x7000), (rows{{1, 0}, {0.5, 0.5}, {0, 1}}));
    EXPECT_EQ(upmix(0x28000, 0x38000), (rows{{1, 0}, {0.5, 0.5}, {0, 1}}));
    EXPECT_EQ(upmix(0x3, 0x803), (rows{{1, 0}, {0, 1}, {0, 0}}));
    EXPECT_EQ(upmix(0x3, 0x4003), (rows{{1, 0}, {0, 1}, {0, 0}}));
}

TEST(Upmix, SpeakersBesideTheCentreRepeatTheirSide) {
    EXPECT_EQ(upmix(0x3, 0xC3), (rows{{1, 0}, {0, 1}, {1, 0}, {0, 1}}));
    EXPECT_EQ(upmix(0x4, 0xC4), (rows{{1}, {1}, {1}}));
}

/// The weight in a speaker that stands between two others, if both are there.
std::optional<double> literal_weight_of_pair(const std::string& output, const std::string& input,
                                             const std::set<std::string>& inputs) {
    struct pair_rule {
        const char* output;
        const char* left;
        const char* right;
    };
    for (const pair_rule& rule : {pair_rule{"SL", "FL", "BL"}, pair_rule{"SR", "FR", "BR"}, pair_rule{"FC", "FL", "FR"},
                                  pair_rule{"BC", "BL", "BR"}, pair_rule{"bit 13", "bit 12", "bit 14"},
                                  pair_rule{"bit 16", "bit 15", "bit 17"}}) {
        if (output == rule.output && inputs.contains(rule.left) && inputs.contains(rule.right)) {
            return input == rule.left || input == rule.right ? 0.5 : 0.0;
        }
    }
    return std::nullopt;
}

/// The weight by the rules as one writes them down.
double literal_weight(const std::string& output, const std::string& input, const std::set<std::string>& inputs) {
    if (inputs.contains(output)) {
        return output == input ? 1.0 : 0.0;
    }
    if (const auto weight = literal_weight_of_pair(output, input, inputs)) {
        return *weight;
    }
    if ((output == "BL" || output == "BR") && inputs.contains("BC")) {
        return input == "BC" ? 1.0 : 0.0;
    }
    const std::set<std::string> left{"FL", "FLC", "BL", "SL"};
    const std::set<std::string> right{"FR", "FRC", "BR", "SR"};
    if (left.contains(output)) {
        return input == (inputs.contains("FL") ? "FL" : "FC") ? 1.0 : 0.0;
    }
    if (right.contains(output)) {
        return input == (inputs.contains("FR") ? "FR" : "FC") ? 1.0 : 0.0;
    }
    return 0.0;
}

std::optional<rows> literal_upmix(std::uint32_t input_mask, std::uint32_t target_mask) {
    if ((input_mask | target_mask) != target_mask && (input_mask & ~target_mask) != 0x4) {
        return std::nullopt;
    }
    const auto inputs = testing_support::speakers_of(input_mask);
    rows made;
    for (const std::string& output : testing_support::speakers_of(target_mask)) {
        made.emplace_back();
        for (const std::string& input : inputs) {
            made.back().push_back(literal_weight(output, input, {inputs.begin(), inputs.end()}));
        }
    }
    return made;
}

TEST(Upmix, AnyMaskToAnyOtherAsTheRulesSay) {
    for (std::uint32_t mask = 0; mask < 0x800; ++mask) {
        ASSERT_EQ(upmix(mask, 0x3F), literal_upmix(mask, 0x3F)) << mask;
        ASSERT_EQ(upmix(mask, 0x63F), literal_upmix(mask, 0x63F)) << mask;
    }
    testing_support::random_source random(1);
    for (int round = 0; round < 20'000; ++round) {
        const auto target_mask = static_cast<std::uint32_t>(random()) & 0x3FFFFU;
        const auto input_mask = static_cast<std::uint32_t>(random()) & (round % 3 == 0 ? 0x3FFFFU : target_mask | 0x4U);
        ASSERT_EQ(upmix(input_mask, target_mask), literal_upmix(input_mask, target_mask))
            << input_mask << " to " << target_mask;
    }
}

TEST(Upmix, ChannelsWithoutASpeakerWeighNothing) {
    const auto matrix = make_upmix_matrix(0, 32, 0x3F);
    ASSERT_TRUE(matrix);
    EXPECT_EQ(rows_of(*matrix), rows(6, std::vector<double>(32, 0.0)));
}

TEST(DefaultMask, IsTheUsualLayoutOrTheLowestBits) {
    constexpr std::uint32_t masks[] = {0, 0x4, 0x3, 0xB, 0x33, 0x3B, 0x3F, 0x70F, 0x63F, 0x1FF, 0x6FF, 0x7FF, 0xFFF};
    for (std::uint32_t channels = 0; channels < std::size(masks); ++channels) {
        EXPECT_EQ(default_mask(channels), masks[channels]) << channels;
    }
    EXPECT_EQ(default_mask(31), 0x7FFFFFFFU);
    EXPECT_EQ(default_mask(32), 0U);
}

TEST(DefaultMask, AMaskThatFitsTheCountStays) {
    EXPECT_EQ(corrected_mask(0x30, 2), 0x30U);
    EXPECT_EQ(corrected_mask(0xFFFFFFFF, 32), 0xFFFFFFFFU);
    EXPECT_EQ(corrected_mask(0, 0), 0U);
    EXPECT_EQ(corrected_mask(0, 2), 0x3U);
    EXPECT_EQ(corrected_mask(0x3F, 8), 0x63FU);
    EXPECT_EQ(corrected_mask(0x3F, 2), 0x3U);
    EXPECT_EQ(corrected_mask(0x3, 9), 0x1FFU);
    EXPECT_EQ(corrected_mask(0x3, 32), 0U);
}

} // namespace
} // namespace kelvane
