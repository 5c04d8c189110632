// A host that is short of memory in the middle of a stream.
#include "tests/module/run_effect.h"
#include "tests/module/sinc_preset.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_playback = velmora::run_flag::end_of_playback;
constexpr block_format stereo{44100, 2, 0x3};
constexpr block_format mono{22050, 1, 0x4};
constexpr std::uint32_t target_hz = 48000;
constexpr std::uint32_t quality = 2;

/// A call that makes blocks, and what the list holds when the host has no room for the first of them, for the second,
/// and so on: what came whole before, and the blocks that were not taken.
struct failing_call {
    std::string what;
    std::size_t frames_before; ///< of stereo, in an earlier call
    programme blocks;
    std::uint32_t flags;
    std::vector<std::size_t> blocks_left;
};

programme noises(const std::vector<block_format>& formats, std::size_t frames) {
    random_source random(3);
    return noise_in(formats, frames, 0.9, random);
}

std::vector<failing_call> failing_calls() {
    return {
        {"a block that primes", 0, noises({stereo}, 6000), 0, {1, 1}},
        {"a long block", 3000, noises({stereo}, 5000), 0, {1, 1}},
        {"a short block", 3000, noises({stereo}, 500), 0, {1}},
        {"two blocks", 3000, noises({stereo, stereo}, 5000), 0, {2, 2, 3, 3}},
        {"the end", 3000, {}, end_of_playback, {0}},
        {"the end of a stream that is not primed", 500, {}, end_of_playback, {0}},
        {"a block and the end", 3000, noises({stereo}, 5000), end_of_playback, {1, 1, 2}},
        {"a block in another format", 3000, noises({mono}, 5000), 0, {1, 2, 2}},
    };
}

programme play_to_the_end(velmora::effect_instance& effect) {
    random_source random(5);
    return play(effect, noises({stereo, mono}, 4000), {1500, 2}, end_of_playback, random);
}

host::service_ptr<velmora::effect_instance> in_the_middle(const failing_call& call) {
    auto effect = make_sinc(target_hz, quality);
    if (call.frames_before != 0) {
        strict_list list;
        append(list, noises({stereo}, call.frames_before));
        effect->run(&list, nullptr, 0);
    }
    return effect;
}

template <class Refuse>
void expect_clean_failure(const failing_call& call, std::size_t taken, Refuse refuse) {
    SCOPED_TRACE(call.what + ", room for " + std::to_string(taken));
    const auto effect = in_the_middle(call);
    strict_list whole;
    append(whole, call.blocks);
    in_the_middle(call)->run(&whole, nullptr, call.flags);
    strict_list list;
    append(list, call.blocks);
    refuse(list, taken);
    EXPECT_NE(thrown_text<std::bad_alloc>([&] { effect->run(&list, nullptr, call.flags); }), "nothing thrown");
    ASSERT_EQ(list.get_count(), call.blocks_left[taken]);
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        const bool is_output = list.at(i).format().sample_rate_hz == target_hz;
        const std::size_t not_taken = call.blocks.size() - (list.get_count() - i); // which of the input blocks
        EXPECT_EQ(bits_of(list.at(i).samples()),
                  bits_of(is_output ? whole.at(i).samples() : call.blocks[not_taken].samples))
            << "block " << i;
    }
    EXPECT_EQ(effect->get_latency(), 0.0); // the stream is gone
    EXPECT_TRUE(are_equal(play_to_the_end(*effect), play_to_the_end(*make_sinc(target_hz, quality))));
}

TEST(SincFailure, WithoutABlockNothingOfTheCallIsLeftAndTheNextStreamIsAsNew) {
    for (const failing_call& call : failing_calls()) {
        for (std::size_t taken = 0; taken < call.blocks_left.size(); ++taken) {
            expect_clean_failure(call, taken, [](strict_list& list, std::size_t n) { list.refuse_after(n); });
        }
    }
}

TEST(SincFailure, WithoutRoomInABlockNothingOfTheCallIsLeftAndTheNextStreamIsAsNew) {
    for (const failing_call& call : failing_calls()) {
        for (std::size_t taken = 0; taken < call.blocks_left.size(); ++taken) {
            expect_clean_failure(call, taken, [](strict_list& list, std::size_t n) { list.refuse_room_after(n); });
        }
    }
}

/// The calls above fail at each of their blocks: one more, and they do not fail.
TEST(SincFailure, WithRoomForAllOfThemNothingFails) {
    for (const failing_call& call : failing_calls()) {
        strict_list list;
        append(list, call.blocks);
        list.refuse_after(call.blocks_left.size());
        EXPECT_NO_THROW(in_the_middle(call)->run(&list, nullptr, call.flags)) << call.what;
        EXPECT_EQ(list.get_count(), call.blocks_left.size()) << call.what;
    }
}

TEST(SincFailure, AfterTheFailureTheBlockThatWasNotTakenBeginsAStream) {
    const programme blocks = noises({stereo}, 5000);
    const auto effect = in_the_middle({.what = "", .frames_before = 3000, .blocks = {}, .flags = 0, .blocks_left = {}});
    strict_list list;
    append(list, blocks);
    list.refuse_after(1);
    EXPECT_THROW(effect->run(&list, nullptr, 0), std::bad_alloc);
    list.refuse_no_more();
    effect->run(&list, nullptr, end_of_playback);
    strict_list expected;
    append(expected, blocks);
    make_sinc(target_hz, quality)->run(&expected, nullptr, end_of_playback);
    ASSERT_EQ(list.get_count(), expected.get_count());
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        EXPECT_EQ(bits_of(list.at(i).samples()), bits_of(expected.at(i).samples())) << i;
    }
}

} // namespace
