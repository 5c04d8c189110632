// The crossfader makes blocks, so the host allocates; the module itself does not.
#include "host/module/effect_catalogue.h"
#include "tests/module/allocation_counter.h"
#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "velmora/block_list.h"
#include "velmora/sample_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t rate_hz = 44100;
constexpr std::uint32_t channels = 2;
constexpr std::size_t longest_block_frames = 5000;
constexpr std::size_t track_frames = std::size_t{5} * rate_hz;
constexpr int tracks = 20;

/// A block whose room is there from the start.
class roomy_block final : public velmora::sample_block {
public:
    const double* get_data_ro() override { return samples_.data(); }
    double* get_data() override { return samples_.data(); }
    std::size_t get_data_size() override { return samples_.size(); }
    void set_data_size(std::size_t samples) override { ASSERT_LE(samples, samples_.size()); }
    std::uint32_t get_sample_rate() override { return rate_hz; }
    void set_sample_rate(std::uint32_t hz) override { ASSERT_EQ(hz, rate_hz); }
    std::uint32_t get_channels() override { return channels; }
    std::uint32_t get_channel_mask() override { return 0x3; }
    void set_channels(std::uint32_t count, std::uint32_t) override { ASSERT_EQ(count, channels); }
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override { frames_ = frames; }

private:
    std::vector<double> samples_ = std::vector<double>(longest_block_frames * channels);
    std::size_t frames_ = 0;
};

/// A list that uses a handful of blocks again and again, so that every allocation seen is the module's.
class recycling_list final : public velmora::block_list {
public:
    recycling_list() {
        for (roomy_block& block : blocks_) {
            free_.push_back(&block);
        }
        used_.reserve(blocks_.size());
    }

    std::size_t get_count() override { return used_.size(); }
    velmora::sample_block* get_item(std::size_t index) override { return used_.at(index); }
    void remove_item(std::size_t index) override {
        free_.push_back(used_.at(index));
        used_.erase(used_.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void remove_all() override { FAIL() << "an effect never clears the list"; }
    velmora::sample_block* insert_item(std::size_t index, std::size_t) override {
        roomy_block* const block = free_.at(free_.size() - 1);
        free_.pop_back();
        return *used_.insert(used_.begin() + static_cast<std::ptrdiff_t>(index), block);
    }

    void append(std::span<const double> samples) {
        velmora::sample_block& block = *insert_item(used_.size(), 0);
        std::copy(samples.begin(), samples.end(), block.get_data());
        block.set_sample_count(samples.size() / channels);
    }

    /// Takes all blocks back and returns how many frames they had.
    std::size_t clear() {
        std::size_t frames = 0;
        while (!used_.empty()) {
            frames += used_.back()->get_sample_count();
            remove_item(used_.size() - 1);
        }
        return frames;
    }

private:
    std::array<roomy_block, 6> blocks_;
    std::vector<roomy_block*> free_;
    std::vector<roomy_block*> used_;
};

TEST(CrossfaderAllocations, ThereAreNoneAfterTheFirstBlock) {
    random_source random(1);
    const std::vector<double> audio = noise(random, longest_block_frames * channels, 0.5);
    const auto effect = make_effect("Crossfader");
    recycling_list list;
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
    recycling_list list;
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
