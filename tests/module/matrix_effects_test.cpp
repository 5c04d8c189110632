#include "frame/exceptions.h"
#include "tests/module/run_effect.h"
#include "tests/support/built_module.h"
#include "tests/support/literal_layout.h"
#include "tests/support/thrown_text.h"
#include "tests/support/u32_bytes.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto to_5_1 = "Upmix to 5.1";
constexpr auto to_7_1 = "Upmix to 7.1";
constexpr auto converter = "layout_converter";
constexpr auto limiter = "layout_limiter";

/// mono, 2.0, 2.1, 3.0, 4.0, 4.1, 5.0, 5.1 (back and side), 6.1, 7.1
constexpr std::uint32_t common_layouts[] = {0x4, 0x3, 0xB, 0x7, 0x33, 0x3B, 0x37, 0x3F, 0x60F, 0x70F, 0x63F};

std::uint32_t count_of(std::uint32_t channel_mask) {
    return static_cast<std::uint32_t>(std::popcount(channel_mask));
}

host::service_ptr<velmora::effect_instance> make_for(const char* effect, std::uint32_t target_mask) {
    return make_effect(effect, u32_bytes({target_mask}));
}

/// What one block becomes.
stretch run(velmora::effect_instance& effect, const stretch& in) {
    strict_list list;
    list.append(in.samples, in.format);
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 1U);
    return {list.at(0).format(), list.at(0).samples()};
}

void expect_equal(const stretch& found, const stretch& expected) {
    EXPECT_EQ(found.format, expected.format) << std::hex << expected.format.channel_mask;
    EXPECT_EQ(bits_of(found.samples), bits_of(expected.samples)) << std::hex << expected.format.channel_mask;
}

stretch noise_of(const block_format& format, random_source& random) {
    return {format, noise(random, std::size_t{300} * format.channels, 1.0)};
}

TEST(UpmixEffects, SpreadTheCommonLayouts) {
    // One frame of distinct powers of two: every sum is exact.
    struct row {
        const char* effect;
        std::uint32_t mask;
        std::vector<double> in;
        std::vector<double> out;
    };
    const row table[] = {
        {to_5_1, 0x4, {8}, {8, 8, 8, 0, 8, 8}},
        {to_7_1, 0x4, {8}, {8, 8, 8, 0, 8, 8, 8, 8}},
        {to_5_1, 0x3, {8, 2}, {8, 2, 5, 0, 8, 2}},
        {to_7_1, 0x3, {8, 2}, {8, 2, 5, 0, 8, 2, 8, 2}},
        {to_5_1, 0x33, {8, 2, 64, 32}, {8, 2, 5, 0, 64, 32}},
        {to_7_1, 0x33, {8, 2, 64, 32}, {8, 2, 5, 0, 64, 32, 36, 17}},
        {to_7_1, 0x3F, {8, 2, 1, 4, 64, 32}, {8, 2, 1, 4, 64, 32, 36, 17}},
        {to_5_1, 0x30, {8, 2}, {0, 0, 0, 0, 8, 2}},
    };
    for (const row& line : table) {
        const std::uint32_t target = line.effect == to_5_1 ? 0x3F : 0x63F;
        const stretch out = run(*make_effect(line.effect), {{48000, count_of(line.mask), line.mask}, line.in});
        EXPECT_EQ(out.samples, line.out) << line.effect << ", mask " << line.mask;
        EXPECT_EQ(out.format, (block_format{48000, count_of(target), target}));
    }
}

TEST(UpmixEffects, CorrectAMaskThatDoesNotFitBeforeTheyMix) {
    const stretch mixed = run(*make_effect(to_5_1), {{44100, 2, 0x0}, {8, 2}});
    EXPECT_EQ(mixed.samples, (std::vector<double>{8, 2, 5, 0, 8, 2}));
    EXPECT_EQ(mixed.format, (block_format{44100, 6, 0x3F}));
}

TEST(UpmixEffects, WriteTheCorrectedMaskEvenWhereTheyDoNotMix) {
    random_source random(1);
    struct row {
        block_format in;
        std::uint32_t corrected;
    };
    for (const row& line : {row{{44100, 9, 0x3}, 0x1FF}, row{{44100, 7, 0x0}, 0x70F}, row{{44100, 11, 0x1}, 0x7FF},
                            row{{44100, 6, 0x3}, 0x3F}, row{{44100, 10, 0x3}, 0x6FF}}) {
        const stretch in = noise_of(line.in, random);
        expect_equal(run(*make_effect(to_5_1), in), {{44100, line.in.channels, line.corrected}, in.samples});
    }
}

TEST(UpmixEffects, LeaveTheirOwnAndLargerLayoutsAlone) {
    random_source random(2);
    for (const std::uint32_t mask : {0x3FU, 0x63FU, 0x60FU, 0x103U, 0x70FU}) {
        strict_list list;
        const stretch in = noise_of({44100, count_of(mask), mask}, random);
        list.append(in.samples, in.format);
        make_effect(to_5_1)->run(&list, nullptr, 0);
        EXPECT_EQ(list.at(0).changes(), 0) << mask;
        EXPECT_EQ(list.at(0).samples(), in.samples);
    }
}

TEST(UpmixEffects, ManyChannels) {
    const auto effect = make_effect(to_5_1);
    const std::vector<double> samples(std::size_t{3} * 33, 0.5);
    strict_list too_many;
    too_many.append(samples, {44100, 33, 0x3});
    EXPECT_EQ(thrown_text<velmora_io::exception_io_data>([&] { effect->run(&too_many, nullptr, 0); }),
              "Unsupported format or corrupted file");
    // Thirty-two are corrected to no speaker at all: they pass as long as nothing came before, and are silence then.
    const stretch thirty_two{{44100, 32, 0x3}, std::vector<double>(64, 0.5)};
    expect_equal(run(*effect, thirty_two), {{44100, 32, 0x0}, thirty_two.samples});
    run(*effect, {{44100, 2, 0x3}, {0.5, 0.5}});
    expect_equal(run(*effect, thirty_two), {{44100, 6, 0x3F}, std::vector<double>(12, 0.0)});
}

TEST(UpmixEffects, TheMatrixFollowsTheMask) {
    const auto effect = make_effect(to_5_1);
    const stretch stereo{{44100, 2, 0x3}, {8, 2}};
    const stretch rear{{44100, 2, 0x30}, {8, 2}};
    const std::vector<double> spread{8, 2, 5, 0, 8, 2};
    EXPECT_EQ(run(*effect, stereo).samples, spread);
    EXPECT_EQ(run(*effect, stereo).samples, spread);
    EXPECT_EQ(run(*effect, rear).samples, (std::vector<double>{0, 0, 0, 0, 8, 2}));
    const stretch larger{{44100, 3, 0x103}, {1, 2, 3}};
    EXPECT_EQ(run(*effect, larger).samples, larger.samples);
    EXPECT_EQ(run(*effect, stereo).samples, spread);
}

TEST(UpmixEffects, AMaskOfMoreSpeakersThanChannelsIsCorrectedToo) {
    const stretch mixed = run(*make_effect(to_5_1), {{44100, 2, 0x3F}, {8, 2}});
    EXPECT_EQ(mixed.samples, (std::vector<double>{8, 2, 5, 0, 8, 2}));
}

TEST(UpmixEffects, ABlockWithoutChannelsOrFramesIsNotMixed) {
    const auto effect = make_effect(to_5_1);
    run(*effect, {{44100, 2, 0x3}, {0.5, 0.5}});
    strict_block no_frames(std::vector<double>{1, 2}, {44100, 2, 0x0});
    no_frames.claim_frames(0);
    EXPECT_TRUE(effect->on_block(&no_frames, nullptr));
    EXPECT_EQ(no_frames.format(), (block_format{44100, 2, 0x3}));
    strict_block no_buffer(std::vector<double>{1, 2}, {44100, 2, 0x0});
    no_buffer.claim_frames(0);
    no_buffer.drop_buffer();
    EXPECT_TRUE(effect->on_block(&no_buffer, nullptr));
    EXPECT_EQ(no_buffer.format(), (block_format{44100, 2, 0x3}));
    strict_block no_channels(std::vector<double>{1, 2}, {44100, 2, 0x0});
    no_channels.set_channels(0, 0);
    EXPECT_TRUE(effect->on_block(&no_channels, nullptr));
    EXPECT_EQ(no_channels.format(), (block_format{44100, 0, 0}));
    strict_block no_channels_but_speakers(std::vector<double>{1, 2}, {44100, 2, 0x3});
    no_channels_but_speakers.set_channels(0, 0x3);
    EXPECT_TRUE(effect->on_block(&no_channels_but_speakers, nullptr));
    EXPECT_EQ(no_channels_but_speakers.format(), (block_format{44100, 0, 0}));
    // Thirty-two channels without a speaker share the mask 0 with none at all, and are still mixed to silence.
    const stretch thirty_two{{44100, 32, 0x3}, std::vector<double>(64, 0.5)};
    expect_equal(run(*effect, thirty_two), {{44100, 6, 0x3F}, std::vector<double>(12, 0.0)});
}

/// Every ordered pair of the common layouts, and of some others.
class LayoutEffects : public testing::TestWithParam<std::uint32_t> {
protected:
    random_source random{3};
};

TEST_P(LayoutEffects, TheConverterGivesExactlyTheRequestedLayout) {
    const std::uint32_t target_mask = GetParam();
    const auto effect = make_for(converter, target_mask);
    for (const std::uint32_t input_mask : common_layouts) {
        const stretch in = noise_of({44100, count_of(input_mask), input_mask}, random);
        const auto matrix = literal_layout_matrix(input_mask, target_mask);
        const std::vector<double> mixed = multiply(matrix, in.samples, in.format.channels);
        const std::vector<double>& expected = input_mask == target_mask ? in.samples : mixed;
        expect_equal(run(*effect, in), {{44100, count_of(target_mask), target_mask}, expected});
    }
}

TEST_P(LayoutEffects, TheLimiterMixesOnlyWhatHasMoreSpeakers) {
    const std::uint32_t target_mask = GetParam();
    const auto effect = make_for(limiter, target_mask);
    for (const std::uint32_t input_mask : common_layouts) {
        const stretch in = noise_of({44100, count_of(input_mask), input_mask}, random);
        if ((input_mask & ~target_mask) == 0) {
            expect_equal(run(*effect, in), in);
        } else {
            const auto matrix = literal_layout_matrix(input_mask, target_mask);
            expect_equal(run(*effect, in), {{44100, count_of(target_mask), target_mask},
                                            multiply(matrix, in.samples, in.format.channels)});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(To, LayoutEffects, testing::ValuesIn(common_layouts));

TEST(LayoutConverter, SurroundToStereoByHand) {
    const stretch out = run(*make_for(converter, 0x3), {{48000, 6, 0x3F}, {10, 20, 5, 1000, 40, 80}});
    ASSERT_EQ(out.format, (block_format{48000, 2, 0x3}));
    EXPECT_NEAR(out.samples[0], 0.4 * 10 + 0.2 * 5 + 0.4 * 40, 1e-14);
    EXPECT_NEAR(out.samples[1], 0.4 * 20 + 0.2 * 5 + 0.4 * 80, 1e-14);
}

TEST(LayoutConverter, SevenToFiveByHand) {
    const stretch out = run(*make_for(converter, 0x3F), {{48000, 8, 0x63F}, {3, 6, 9, 12, 15, 18, 21, 24}});
    const std::vector<double> expected{2 + 7, 4 + 8, 6, 8, 10 + 7, 12 + 8};
    ASSERT_EQ(out.samples.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(out.samples[i], expected[i], 1e-14) << i;
    }
}

TEST(LayoutEffects, AWrongPayloadSizeGivesBlocksWithoutChannels) {
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{3}, std::size_t{5}}) {
        for (const char* const name : {converter, limiter}) {
            const auto effect = make_effect(name, std::vector<std::uint8_t>(bytes, 0xFF));
            strict_list list;
            list.append(std::vector<double>(8, 0.5), {44100, 2, 0x3});
            effect->run(&list, nullptr, 0);
            ASSERT_EQ(list.get_count(), 1U) << name << ", " << bytes;
            EXPECT_EQ(list.at(0).format(), (block_format{44100, 0, 0}));
            make_effect("Hard -6dB limiter")->run(&list, nullptr, 0);
            EXPECT_EQ(list.get_count(), 0U); // the next effect drops them
        }
    }
}

TEST(LayoutLimiter, LooksAtTheMaskBeforeAnyCorrection) {
    random_source random(4);
    const stretch unlabelled = noise_of({44100, 8, 0x0}, random);
    expect_equal(run(*make_for(limiter, 0x3), unlabelled), unlabelled);
    const stretch wrong = noise_of({44100, 8, 0x3}, random); // 7.1 that says stereo
    expect_equal(run(*make_for(limiter, 0x3), wrong), wrong);
    const stretch high = noise_of({44100, 3, 0x80000003}, random);
    EXPECT_EQ(run(*make_for(limiter, 0x3), high).format, (block_format{44100, 2, 0x3}));
    EXPECT_EQ(run(*make_for(converter, 0x3), wrong).format, (block_format{44100, 2, 0x3}));
}

TEST(LayoutConverter, AllThirtyTwoSpeakers) {
    random_source random(5);
    const stretch stereo = noise_of({44100, 2, 0x3}, random);
    const stretch wide = run(*make_for(converter, 0xFFFFFFFF), stereo);
    EXPECT_EQ(wide.format, (block_format{44100, 32, 0xFFFFFFFF}));
    EXPECT_EQ(bits_of(wide.samples), bits_of(multiply(literal_layout_matrix(0x3, 0xFFFFFFFF), stereo.samples, 2)));
    EXPECT_EQ(bits_of(run(*make_for(converter, 0x3), wide).samples),
              bits_of(multiply(literal_layout_matrix(0xFFFFFFFF, 0x3), wide.samples, 32)));
}

} // namespace
