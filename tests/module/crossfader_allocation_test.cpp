// The crossfader makes blocks, so the host allocates; the module itself does not.
#include "host/module/effect_catalogue.h"
#include "tests/module/allocation_counter.h"
#include "tests/support/built_module.h"
#include "tests/support/recycling_list.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t rate_hz = 44100;
constexpr std::uint32_t channels = 2;
constexpr std::size_t longest_block_frames = 5000;
constexpr block_format format{rate_hz, channels, 0x3};
constexpr std::size_t track_frames = std::size_t{5} * rate_hz;
constexpr int tracks = 20;

TEST(CrossfaderAllocations, ThereAreNoneAfterTheFirstBlock) {
    random_source random(1);
    const std::vector<double> audio = noise(random, longest_block_frames * channels, 0.5);
    const auto effect = make_effect("Crossfader");
    recycling_list list(longest_block_frames * channels, format);
    const std::uint64_t before_first = allocations();
    list.append(audio);
    effect->run(&list, nullptr, 0);
    std::size_t frames_out = list.clear();
    EXPECT_GT(allocations(), before_first) << "the counter does not see the module";
    const std::uint64_t before = allocations();
    for (int track = 0; track < tracks; ++track) {
        for (std::size_t left = track_frames; left > 0;) {
            const std::size_t frames = std::min(left, pick(random, 1, longest_block_frames));
            list.append(std::span(audio).first(frames * channels));
            effect->run(&list, nullptr, 0);
            frames_out += list.clear();
            left -= frames;
        }
        effect->run(&list, nullptr, velmora::run_flag::end_of_track);
    }
    EXPECT_EQ(allocations(), before);
    // One overlap of 2 s a change of track, and as much is held.
    EXPECT_EQ(frames_out, longest_block_frames + tracks * track_frames - tracks * std::size_t{2} * rate_hz);
}

TEST(CrossfaderAllocations, AFlushGivesTheRingBack) {
    const std::vector<double> audio(longest_block_frames * channels);
    const auto effect = make_effect("Crossfader");
    recycling_list list(longest_block_frames * channels, format);
    for (int playback = 0; playback < 3; ++playback) {
        const std::uint64_t before = allocations();
        list.append(audio);
        effect->run(&list, nullptr, 0);
        list.clear();
        EXPECT_EQ(allocations() - before, 1U) << playback; // its own ring each time
        effect->flush();
    }
}

} // namespace
