#include "effects/resampler_ssrc/ssrc_effect.h"

#include "frame/exceptions.h"
#include "frame/instances.h"
#include "tests/resampler_ssrc/conversions.h"
#include "tests/support/allocations.h"
#include "tests/support/recycling_list.h"
#include "tests/support/signals.h"
#include "tests/support/strict_block.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

constexpr auto end_of_playback = velmora::run_flag::end_of_playback;
constexpr std::size_t frames = 20'000; ///< enough for output to come at once

service_ptr<velmora::effect_instance> make(std::uint32_t target_hz) {
    return make_instance<ssrc_resampler>(ssrc_settings{target_hz, false, ""});
}

TEST(SsrcEffect, ATargetRateOutOfItsRangeFailsAtEveryBlock) {
    const std::vector<double> samples(100, 0.5);
    for (const std::uint32_t target_hz : {0U, 999U, 20'000'001U, 0xFFFFFFFFU}) {
        const auto effect = make(target_hz);
        for (const std::uint32_t rate_hz : {44100U, 44100U, 999U, target_hz}) {
            if (rate_hz == 0) {
                continue; // no audio
            }
            strict_list list;
            list.append(samples, {rate_hz, 1, 0x4});
            EXPECT_EQ(thrown_text<mox::exception_invalid_params>([&] { effect->run(&list, nullptr, 0); }),
                      "Invalid parameters")
                << target_hz;
            EXPECT_EQ(list.get_count(), 1U);
            EXPECT_EQ(effect->get_latency(), 0.0);
        }
    }
    for (const std::uint32_t target_hz : {1000U, 20'000'000U}) {
        strict_list list;
        list.append(samples, {44100, 1, 0x4});
        EXPECT_NO_THROW(make(target_hz)->run(&list, nullptr, 0)) << target_hz;
    }
}

/// The output of a playback of two blocks and its end.
std::vector<double> play(velmora::effect_instance& effect, std::span<const double> samples) {
    strict_list list;
    list.append(samples.first(samples.size() / 2), {44100, 1, 0x4});
    list.append(samples.subspan(samples.size() / 2), {44100, 1, 0x4});
    effect.run(&list, nullptr, end_of_playback);
    std::vector<double> output;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        const std::vector<double> part = list.at(i).samples();
        output.insert(output.end(), part.begin(), part.end());
    }
    return output;
}

TEST(SsrcEffect, AnyAllocationThatFailsDropsTheStreamAndNothingElse) {
    random_source random(1);
    const std::vector<double> samples = noise(random, frames, 0.9);
    const std::vector<double> expected = convert({44100, 48000}, samples);
    const auto effect = make(48000);
    std::string said = "-";
    std::vector<std::string> texts;
    for (std::int64_t blocks = 0; said != "nothing thrown"; ++blocks) {
        strict_list list;
        list.append(samples, {44100, 1, 0x4});
        {
            const allocation_limit limit(blocks);
            said = thrown_text<std::exception>([&] { effect->run(&list, nullptr, 0); });
        }
        if (texts.empty() || texts.back() != said) {
            texts.push_back(said);
        }
        ASSERT_EQ(list.get_count(), 1U);
        EXPECT_EQ(list.at(0).format().sample_rate_hz, said == "nothing thrown" ? 48000U : 44100U) << blocks;
        EXPECT_EQ(effect->get_latency() > 0.0, said == "nothing thrown") << blocks;
        effect->flush();
        EXPECT_EQ(bits_of(play(*effect, samples)), bits_of(expected)) << blocks;
        EXPECT_EQ(bits_of(play(*make(48000), samples)), bits_of(expected)) << blocks;
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"bad allocation", "Resampling failure", "nothing thrown"}));
}

TEST(SsrcEffect, TheOldTailIsOutWhenTheNewFormatFindsNoMemory) {
    random_source random(2);
    const std::vector<double> samples = noise(random, 441, 0.9);
    const auto effect = make(48000);
    const auto run = [&](strict_list& list, std::uint32_t rate_hz, std::uint32_t flags) {
        list.append(samples, {rate_hz, 1, 0x4});
        return thrown_text<bad_allocation>([&] { effect->run(&list, nullptr, flags); });
    };
    strict_list first;
    EXPECT_EQ(run(first, 44100, 0), "nothing thrown");
    ASSERT_EQ(first.get_count(), 0U); // all held
    strict_list second;
    {
        const allocation_limit limit(2);
        EXPECT_EQ(run(second, 96000, 0), "bad allocation");
    }
    ASSERT_EQ(second.get_count(), 2U); // the tail, and the block that failed
    EXPECT_EQ(second.at(0).get_sample_count(), 480U);
    EXPECT_EQ(second.at(1).format().sample_rate_hz, 96000U);
    strict_list third;
    EXPECT_EQ(run(third, 96000, end_of_playback), "nothing thrown");
    ASSERT_EQ(third.get_count(), 1U);
    EXPECT_EQ(bits_of(third.at(0).samples()), bits_of(convert({96000, 48000}, samples)));
}

TEST(SsrcEffect, ASteadyStreamAllocatesNothing) {
    constexpr std::size_t longest_frames = 3000;
    constexpr int blocks = 1000;
    random_source random(4);
    const std::vector<double> samples = noise(random, 2 * longest_frames, 0.9);
    for (const std::uint32_t target_hz : {48000U, 32000U}) {
        const auto effect = make(target_hz);
        recycling_list list(200'000, {44100, 2, 0x3});
        std::uint64_t before = 0;
        std::size_t in = 0;
        std::size_t out = 0;
        for (int i = 0; i < blocks; ++i) {
            before = i == blocks / 20 ? allocations() : before;
            const std::size_t count = i < blocks / 20 ? longest_frames : pick(random, 1, longest_frames);
            list.append(std::span(samples).first(2 * count));
            effect->run(&list, nullptr, 0);
            in += count;
            out += list.clear();
        }
        effect->run(&list, nullptr, end_of_playback);
        out += list.clear();
        EXPECT_EQ(allocations(), before) << target_hz;
        EXPECT_GT(before, 0U);
        EXPECT_EQ(out, in * target_hz / 44100) << target_hz;
    }
}

TEST(SsrcEffect, TheEndOfAPlaybackAndAFlushGiveAllMemoryBack) {
    const std::vector<double> samples(frames, 0.5);
    recycling_list list(3 * frames, {44100, 1, 0x4});
    const auto effect = make(48000);
    const auto run = [&](std::uint32_t flags) {
        list.append(samples);
        effect->run(&list, nullptr, flags);
        list.clear();
    };
    const std::int64_t before = blocks_in_use();
    run(0);
    EXPECT_GT(blocks_in_use(), before);
    run(end_of_playback);
    EXPECT_EQ(blocks_in_use(), before) << "after the end";
    run(0);
    effect->flush();
    EXPECT_EQ(blocks_in_use(), before) << "after a flush";
}

} // namespace
} // namespace kelvane
