#include "tests/module/run_effect.h"
#include "tests/support/built_module.h"
#include "tests/support/literal_limiter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto limiter = "Advanced Limiter";
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;
constexpr std::size_t look_ahead_frames = 255;

/// Plays one stretch through literal limiters, and enough silence behind it to get all of it out.
stretch limited_literally(const stretch& in) {
    const std::size_t channels = in.format.channels;
    std::vector<double> padded = in.samples;
    padded.resize(in.samples.size() + look_ahead_frames * channels);
    std::vector<literal_limiter> limiters(channels);
    std::vector<double> out;
    for (std::size_t i = 0; i < padded.size(); ++i) {
        const double sample = limiters[i % channels].step(padded[i]);
        if (i >= look_ahead_frames * channels) {
            out.push_back(sample);
        }
    }
    return {in.format, out};
}

programme limited_literally(const programme& played) {
    programme out;
    for (const stretch& one : played) {
        out.push_back(limited_literally(one));
    }
    return out;
}

/// Neighbouring stretches differ in one property of the format at least.
programme eventful_programme(random_source& random, std::size_t longest_frames) {
    const std::vector<block_format> formats{
        {44100, 2, 0x3},   {48000, 2, 0x3},   {48000, 2, 0x30}, {48000, 1, 0x4}, {48000, 6, 0x3F},
        {48000, 6, 0x60F}, {96000, 8, 0x63F}, {44100, 3, 0x7},  {44100, 2, 0x3}, {44100, 5, 0x37},
    };
    programme made;
    for (const block_format& format : formats) {
        const std::size_t frames = pick(random, 1, longest_frames);
        made.push_back({format, noise(random, frames * format.channels, std::pow(10.0, pick(random, 0, 6)) / 2.0)});
    }
    return made;
}

TEST(AdvancedLimiter, EveryFormatIsPlayedWholeAndForItself) {
    random_source random(1);
    for (int round = 0; round < 20; ++round) {
        const programme played = eventful_programme(random, round % 2 == 0 ? 600 : 3000);
        const programme expected = limited_literally(played);
        for (const cutting& cut : {cutting{1, 1}, cutting{254, 3}, cutting{256, 1}, cutting{5000, 4}}) {
            const programme out = play(*make_effect(limiter), played, cut, end_of_playback, random);
            EXPECT_TRUE(are_equal(out, expected)) << "round " << round << ", blocks of " << cut.longest_block_frames;
        }
    }
}

TEST(AdvancedLimiter, AShortTrackComesOutAtTheEndOfPlaybackInItsOwnLength) {
    random_source random(2);
    for (const std::size_t frames : {1U, 2U, 100U, 254U, 255U}) {
        const auto effect = make_effect(limiter);
        const programme played = noise_in({{44100, 2, 0x3}}, frames, 0.9, random);
        EXPECT_EQ(frames_of(play(*effect, played, {60, 2}, 0, random)), 0U) << frames;
        strict_list list;
        effect->run(&list, nullptr, end_of_playback);
        ASSERT_EQ(list.get_count(), 1U) << frames;
        EXPECT_EQ(list.at(0).format(), played[0].format);
        EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(limited_literally(played[0]).samples)) << frames;
    }
}

TEST(AdvancedLimiter, TheFirst255FramesAreSwallowedAndEveryOneThereafterGivesOne) {
    random_source random(3);
    const auto effect = make_effect(limiter);
    strict_list list;
    const std::vector<double> samples = noise(random, 2000, 0.9);
    list.append({samples.data(), 400}, {44100, 2, 0x3});
    list.append({samples.data() + 400, 600}, {44100, 2, 0x3});
    effect->run(&list, nullptr, 0);
    ASSERT_EQ(list.get_count(), 1U); // 200 frames, all swallowed; 300 frames, of which 55 are
    EXPECT_EQ(list.at(0).get_sample_count(), 245U);
    strict_list next;
    next.append({samples.data() + 1000, 1000}, {44100, 2, 0x3});
    effect->run(&next, nullptr, 0);
    EXPECT_EQ(next.at(0).get_sample_count(), 500U);
}

TEST(AdvancedLimiter, ANewFormatPushesTheOldTailOutBeforeItsOwnBlock) {
    random_source random(4);
    for (const block_format& next : {block_format{48000, 2, 0x3}, block_format{44100, 2, 0x30},
                                     block_format{44100, 1, 0x3}, block_format{44100, 6, 0x3F}}) {
        strict_list list;
        list.append(noise(random, 2000, 0.9), {44100, 2, 0x3});
        list.append(noise(random, std::size_t{300} * next.channels, 0.9), next);
        make_effect(limiter)->run(&list, nullptr, 0);
        ASSERT_EQ(list.get_count(), 3U);
        EXPECT_EQ(list.at(1).format(), (block_format{44100, 2, 0x3}));
        EXPECT_EQ(list.at(1).get_sample_count(), 255U);
        EXPECT_EQ(list.at(2).format(), next);
        EXPECT_EQ(list.at(2).get_sample_count(), 45U);
    }
}

TEST(AdvancedLimiter, LatencyIsWhatItHolds) {
    const auto effect = make_effect(limiter);
    const auto latency_after = [&](std::size_t frames, std::uint32_t rate_hz, std::uint32_t flags) {
        strict_list list;
        if (frames != 0) {
            list.append(std::vector<double>(2 * frames), {rate_hz, 2, 0x3});
        }
        effect->run(&list, nullptr, flags);
        return effect->get_latency();
    };
    EXPECT_EQ(effect->get_latency(), 0.0);
    EXPECT_EQ(latency_after(1, 44100, 0), 1.0 / 44100.0);
    EXPECT_EQ(latency_after(99, 44100, 0), 100.0 / 44100.0);
    EXPECT_EQ(latency_after(1000, 44100, 0), 255.0 / 44100.0);
    EXPECT_EQ(latency_after(10, 96000, 0), 10.0 / 96000.0);
    EXPECT_EQ(latency_after(500, 96000, 0), 255.0 / 96000.0);
    EXPECT_EQ(latency_after(0, 0, end_of_playback), 0.0);
    EXPECT_EQ(latency_after(300, 96000, 0), 255.0 / 96000.0);
    effect->flush();
    EXPECT_EQ(effect->get_latency(), 0.0);
}

TEST(AdvancedLimiter, RunsThroughTheEndsOfTracks) {
    const auto effect = make_effect(limiter);
    EXPECT_FALSE(effect->needs_track_change_mark());
    strict_list list;
    list.append(std::vector<double>(1000, 0.5), {44100, 2, 0x3});
    effect->run(&list, nullptr, velmora::run_flag::end_of_track);
    EXPECT_EQ(list.at(0).get_sample_count(), 245U);
    EXPECT_EQ(effect->get_latency(), 255.0 / 44100.0);
}

TEST(AdvancedLimiter, AfterTheEndOfPlaybackTheGainIsStillWhatItWas) {
    // The second playback starts while the gain still recovers from the first one's last peak.
    const auto effect = make_effect(limiter);
    random_source random(5);
    programme loud{{{44100, 1, 0x4}, std::vector<double>(500, 0.5)}};
    loud[0].samples.back() = 2.0;
    play(*effect, loud, {500, 1}, end_of_playback, random);
    const programme quiet{{{44100, 1, 0x4}, std::vector<double>(500, 0.5)}};
    const programme out = play(*effect, quiet, {500, 1}, end_of_playback, random);
    ASSERT_EQ(frames_of(out), 500U);
    EXPECT_NEAR(out[0].samples[0], 0.5 * (1.0 - 0.5 * std::pow(0.999, 256.0)), 1e-4);
}

TEST(AdvancedLimiter, TheEndOfPlaybackGivesNothingASecondTime) {
    random_source random(6);
    const auto effect = make_effect(limiter);
    play(*effect, noise_in({{44100, 2, 0x3}}, 300, 0.9, random), {300, 1}, end_of_playback, random);
    strict_list list;
    effect->run(&list, nullptr, end_of_playback);
    EXPECT_EQ(list.get_count(), 0U);
}

/// A list that refuses to take a block in, or gives one that cannot grow, as long as it is told to.
class refusing_list final : public velmora::block_list {
public:
    bool refuses_blocks = false;
    bool gives_rigid_blocks = false;
    strict_list blocks;

    std::size_t get_count() override { return blocks.get_count(); }
    velmora::sample_block* get_item(std::size_t index) override { return blocks.get_item(index); }
    void remove_item(std::size_t index) override { blocks.remove_item(index); }
    void remove_all() override { blocks.remove_all(); }
    velmora::sample_block* insert_item(std::size_t index, std::size_t samples_hint) override {
        if (refuses_blocks) {
            throw std::bad_alloc();
        }
        velmora::sample_block* const block = blocks.insert_item(index, gives_rigid_blocks ? 0 : samples_hint);
        if (gives_rigid_blocks) {
            blocks.at(index).refuse_growth();
        }
        return block;
    }
};

TEST(AdvancedLimiter, ATailThatTheHostCannotTakeIsNotLost) {
    random_source random(7);
    for (const std::size_t frames : {100U, 255U, 700U}) {
        const programme played = noise_in({{44100, 2, 0x3}}, frames, 2.0, random);
        programme expected = play(*make_effect(limiter), played, {frames, 1}, end_of_playback, random);
        const auto effect = make_effect(limiter);
        const programme before = play(*effect, played, {frames, 1}, 0, random);
        const double latency_s = effect->get_latency();
        refusing_list list;
        list.refuses_blocks = true;
        EXPECT_THROW(effect->run(&list, nullptr, end_of_playback), std::bad_alloc);
        list.refuses_blocks = false;
        list.gives_rigid_blocks = true;
        EXPECT_THROW(effect->run(&list, nullptr, end_of_playback), std::bad_alloc);
        EXPECT_EQ(list.get_count(), 0U);
        EXPECT_EQ(effect->get_latency(), latency_s);
        list.gives_rigid_blocks = false;
        effect->run(&list, nullptr, end_of_playback);
        ASSERT_EQ(list.get_count(), 1U);
        const std::size_t swallowed = 2 * std::min<std::size_t>(frames, look_ahead_frames);
        EXPECT_EQ(
            bits_of(list.blocks.at(0).samples()),
            bits_of({expected[0].samples.end() - static_cast<std::ptrdiff_t>(swallowed), expected[0].samples.end()}))
            << frames;
    }
}

TEST(AdvancedLimiter, ABlockWithoutFramesOrChannelsDoesNotStay) {
    const auto effect = make_effect(limiter);
    strict_block no_frames(std::vector<double>{1, 2}, {44100, 2, 0x3});
    no_frames.claim_frames(0);
    no_frames.drop_buffer();
    EXPECT_FALSE(effect->on_block(&no_frames, nullptr));
    strict_block no_channels(std::vector<double>{1, 2}, {44100, 2, 0x3});
    no_channels.set_channels(0, 0);
    EXPECT_FALSE(effect->on_block(&no_channels, nullptr));
    strict_block no_rate(std::vector<double>(1000, 0.5), {0, 2, 0x3});
    EXPECT_FALSE(effect->on_block(&no_rate, nullptr));
}

TEST(AdvancedLimiter, ABlockWhoseFramesAreAllSwallowedLeavesTheList) {
    strict_list list;
    list.append(std::vector<double>(510, 0.5), {44100, 2, 0x3});
    make_effect(limiter)->run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 0U);
}

} // namespace
