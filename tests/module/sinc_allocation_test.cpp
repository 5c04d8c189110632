// What the resampler allocates while a stream runs: nothing, until a longer block comes than any before.
#include "tests/module/allocation_counter.h"
#include "tests/module/sinc_preset.h"
#include "tests/support/recycling_list.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace {

using namespace testing_support;

constexpr block_format format{44100, 2, 0x3};
constexpr std::uint32_t target_hz = 48000;
constexpr std::size_t held_frames = 1024;
constexpr std::size_t longest_block_frames = 8000;
constexpr std::size_t room_samples = 4 * longest_block_frames;

/// Plays blocks of one noise and tells what came of them.
class allocating_stream {
public:
    /// Answers the allocations of one call.
    std::uint64_t play(std::size_t frames, std::uint32_t flags = 0) {
        list_.append(std::span(audio_).first(frames * format.channels));
        const std::uint64_t before = allocations();
        effect_->run(&list_, nullptr, flags);
        const std::uint64_t made = allocations() - before;
        frames_in += frames;
        frames_out += list_.clear();
        return made;
    }
    void flush() { effect_->flush(); }

    std::size_t frames_in = 0;
    std::size_t frames_out = 0;

private:
    static std::vector<double> make_audio() {
        random_source random(1);
        return noise(random, longest_block_frames * format.channels, 0.5);
    }

    std::vector<double> audio_ = make_audio();
    recycling_list list_{room_samples, format};
    host::service_ptr<velmora::effect_instance> effect_ = make_sinc(target_hz, 0);
};

TEST(SincAllocations, ThereAreNoneAfterTheLongestBlock) {
    allocating_stream stream;
    EXPECT_GT(stream.play(held_frames), 0U) << "the counter does not see the module";
    stream.play(longest_block_frames);
    random_source random(2);
    while (stream.frames_in < std::size_t{120} * format.sample_rate_hz) {
        const std::size_t frames = pick(random, 1, longest_block_frames);
        ASSERT_EQ(stream.play(frames), 0U) << frames << " frames, behind " << stream.frames_in;
    }
    EXPECT_EQ(stream.play(1, velmora::run_flag::end_of_playback), 0U); // the end needs no more room
    EXPECT_EQ(stream.frames_out, static_cast<std::size_t>(
                                     static_cast<double>(stream.frames_in) / format.sample_rate_hz * target_hz + 0.5));
}

TEST(SincAllocations, ASeekNeedsNone) {
    allocating_stream stream;
    stream.play(held_frames);
    for (int seek = 0; seek < 5; ++seek) {
        stream.flush();
        EXPECT_EQ(stream.play(3000), 0U) << seek;
    }
}

/// So many frames of a block are converted at once as it is longer than what is held. There is room for the output of
/// 4096 from the start; where it is short, it grows for n + n mod 1024.
TEST(SincAllocations, TheWorkBufferGrowsByItsRule) {
    struct row {
        std::size_t converted_frames;
        bool grows;
    };
    const std::vector<std::vector<row>> streams{
        {{4096, false}, {4097, true}, {4098, false}, {4099, true}, {4102, false}, {4103, true}}, // for 4098, then 4102
        {{5000, true}, {5904, false}, {5905, true}},                                             // for 5904
        {{5120, true}, {5121, true}, {5122, false}},                                             // for 5120, then 5122
        {{6143, true}, {6976, false}},                                                           // for 7166
    };
    for (const std::vector<row>& blocks : streams) {
        allocating_stream stream;
        stream.play(held_frames);
        for (const row& block : blocks) {
            EXPECT_EQ(stream.play(held_frames + block.converted_frames), block.grows ? 1U : 0U)
                << block.converted_frames << " frames, after " << blocks.front().converted_frames;
        }
    }
}

} // namespace
