#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "tests/support/strict_block.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing_support::bits_of;
using testing_support::block_format;
using testing_support::make_effect;
using testing_support::strict_list;
using testing_support::thrown_text;

constexpr auto mono_to_stereo = "Convert mono to stereo";
constexpr auto stereo_to_quad = "Convert stereo to 4 channels";
constexpr auto move_to_rear = "Move stereo to rear channels";
constexpr auto reverse = "Reverse stereo channels";

/// One block through a new instance of the effect.
strict_list run(const std::string& effect, const std::vector<double>& samples, const block_format& format) {
    strict_list list;
    list.append(samples, format);
    make_effect(effect)->run(&list, nullptr, 0);
    return list;
}

void expect_block(strict_list list, const std::vector<double>& samples, const block_format& format) {
    ASSERT_EQ(list.get_count(), 1U);
    EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(samples));
    EXPECT_EQ(list.at(0).format(), format);
}

void expect_untouched(const std::string& effect, const std::vector<double>& samples, const block_format& format) {
    strict_list list = run(effect, samples, format);
    ASSERT_EQ(list.get_count(), 1U);
    EXPECT_EQ(list.at(0).changes(), 0) << effect << ", mask " << format.channel_mask;
    EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(samples));
}

TEST(MonoToStereo, BothChannelsGetTheSample) {
    expect_block(run(mono_to_stereo, {0.5, -0.0, 3.0}, {48000, 1, 0x4}), {0.5, 0.5, -0.0, -0.0, 3.0, 3.0},
                 {48000, 2, 0x3});
}

TEST(MonoToStereo, TheMaskOfTheOneChannelDoesNotMatter) {
    for (const std::uint32_t mask : {0x0U, 0x1U, 0x2U, 0x100U, 0x3FU, 0xFFFFFFFFU}) {
        expect_block(run(mono_to_stereo, {0.5}, {44100, 1, mask}), {0.5, 0.5}, {44100, 2, 0x3});
    }
}

TEST(MonoToStereo, OtherChannelCountsPass) {
    expect_untouched(mono_to_stereo, {0.1, 0.2}, {44100, 2, 0x3});
    expect_untouched(mono_to_stereo, {0.1, 0.2}, {44100, 2, 0x4}); // a mask of one speaker does not make it mono
    expect_untouched(mono_to_stereo, {0.1, 0.2, 0.3}, {44100, 3, 0x7});
}

TEST(StereoToQuad, ThePairIsRepeatedAtTheBack) {
    expect_block(run(stereo_to_quad, {1.0, 2.0, 3.0, 4.0}, {32000, 2, 0x3}), {1.0, 2.0, 1.0, 2.0, 3.0, 4.0, 3.0, 4.0},
                 {32000, 4, 0x33});
}

TEST(MoveStereoToRear, RelabelsAndTouchesNoSample) {
    expect_block(run(move_to_rear, {1.0, 2.0}, {44100, 2, 0x3}), {1.0, 2.0}, {44100, 2, 0x30});
}

TEST(ReverseStereo, SwapsTheTwoSamplesOfEveryFrame) {
    expect_block(run(reverse, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, {44100, 2, 0x3}), {2.0, 1.0, 4.0, 3.0, 6.0, 5.0},
                 {44100, 2, 0x3});
}

TEST(ReverseStereo, TwiceGivesTheInputBackBitForBit) {
    testing_support::random_source random(1);
    const std::vector<double> input = testing_support::noise(random, 2000, 2.0);
    strict_list list;
    list.append(input, {44100, 2, 0x3});
    for (int i = 0; i < 2; ++i) {
        make_effect(reverse)->run(&list, nullptr, 0);
    }
    EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(input));
}

TEST(StereoEffects, AnyOtherLabelPassesUnchanged) {
    for (const char* const effect : {stereo_to_quad, move_to_rear, reverse}) {
        for (const std::uint32_t mask : {0x0U, 0x1U, 0x4U, 0x5U, 0x7U, 0x30U, 0x33U, 0x600U, 0xFFFFFFFFU}) {
            expect_untouched(effect, {0.1, 0.2, 0.3, 0.4}, {44100, 2, mask});
        }
        expect_untouched(effect, {0.1}, {44100, 1, 0x4});
        expect_untouched(effect, {0.1}, {44100, 1, 0x3});
        expect_untouched(effect, {0.1, 0.2, 0.3}, {44100, 3, 0x3});
    }
}

TEST(StereoEffects, MovedToTheRearTheyStayTwoChannels) {
    strict_list list;
    list.append(std::vector<double>{1.0, 2.0}, {44100, 2, 0x3});
    make_effect(move_to_rear)->run(&list, nullptr, 0);
    make_effect(stereo_to_quad)->run(&list, nullptr, 0);
    expect_block(std::move(list), {1.0, 2.0}, {44100, 2, 0x30});
}

/// Claims room for so many samples that the widened block cannot be counted: the product wraps to next to nothing.
class endless_block final : public velmora::sample_block {
public:
    endless_block(std::uint32_t channels, std::uint32_t mask, std::size_t frames)
        : channels_(channels), mask_(mask), frames_(frames) {}

    const double* get_data_ro() override { return &sample_; }
    double* get_data() override { return &sample_; }
    std::size_t get_data_size() override { return ~std::size_t{0}; }
    void set_data_size(std::size_t) override { FAIL() << "the block must not be touched"; }
    std::uint32_t get_sample_rate() override { return 44100; }
    void set_sample_rate(std::uint32_t) override {}
    std::uint32_t get_channels() override { return channels_; }
    std::uint32_t get_channel_mask() override { return mask_; }
    void set_channels(std::uint32_t, std::uint32_t) override {}
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t) override {}

private:
    double sample_ = 0.0;
    std::uint32_t channels_;
    std::uint32_t mask_;
    std::size_t frames_;
};

TEST(ChannelEffects, AnImpossiblyLongBlockIsABadAllocation) {
    struct row {
        const char* effect;
        endless_block block;
    };
    constexpr std::size_t half = ~std::size_t{0} / 2 + 1;
    for (const row& line :
         {row{mono_to_stereo, {1, 0x4, half}}, row{stereo_to_quad, {2, 0x3, half / 2}},
          row{"Downmix channels to stereo", {1, 0x1, half}}, row{"Upmix to 5.1", {2, 0x3, half / 2}}}) {
        const auto effect = make_effect(line.effect);
        endless_block block = line.block;
        EXPECT_EQ(thrown_text<std::exception>([&] { effect->on_block(&block, nullptr); }), "bad allocation")
            << line.effect;
    }
}

} // namespace
