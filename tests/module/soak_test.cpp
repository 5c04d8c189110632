// Three hours of audio through effects that keep the number of frames, in blocks of any length.
#include "tests/module/allocation_counter.h"
#include "tests/module/resident_pages.h"
#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "velmora/block_list.h"
#include "velmora/sample_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t rate_hz = 44100;
constexpr std::uint32_t channels = 6;
constexpr std::uint32_t mask = 0x3F;
constexpr std::size_t total_frames = std::size_t{3} * 3600 * rate_hz;
constexpr std::size_t longest_block_frames = 20'000;
constexpr std::size_t first_frames = std::size_t{60} * rate_hz; ///< by then every length has come near its maximum

/// A list of one block that is used again and again, so that every allocation seen is the module's.
class recycled_block final : public velmora::sample_block, public velmora::block_list {
public:
    recycled_block() : samples_(longest_block_frames * 8) {}

    void refill(const double* samples, std::size_t frames) {
        std::copy_n(samples, frames * channels, samples_.begin());
        frames_ = frames;
        channels_ = channels;
        mask_ = mask;
    }

    const double* get_data_ro() override { return samples_.data(); }
    double* get_data() override { return samples_.data(); }
    std::size_t get_data_size() override { return samples_.size(); }
    void set_data_size(std::size_t samples) override { ASSERT_LE(samples, samples_.size()); }
    std::uint32_t get_sample_rate() override { return rate_hz; }
    void set_sample_rate(std::uint32_t hz) override { ASSERT_EQ(hz, rate_hz); }
    std::uint32_t get_channels() override { return channels_; }
    std::uint32_t get_channel_mask() override { return mask_; }
    void set_channels(std::uint32_t count, std::uint32_t new_mask) override {
        channels_ = count;
        mask_ = new_mask;
    }
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override { frames_ = frames; }

    std::size_t get_count() override { return 1; }
    velmora::sample_block* get_item(std::size_t) override { return this; }
    void remove_item(std::size_t) override { FAIL() << "no block may go"; }
    void remove_all() override { FAIL() << "no block may go"; }
    velmora::sample_block* insert_item(std::size_t, std::size_t) override {
        ADD_FAILURE() << "no block may come";
        return nullptr;
    }

private:
    std::vector<double> samples_;
    std::size_t frames_ = 0;
    std::uint32_t channels_ = 0;
    std::uint32_t mask_ = 0;
};

TEST(Soak, ThreeHoursKeepEveryFrameInFlatMemoryWithoutAnAllocation) {
    // 5.1 down to stereo, and so on: an order in which each effect has work to do.
    std::vector<host::service_ptr<velmora::effect_instance>> chain;
    for (const auto* const name :
         {"Downmix channels to stereo", "Reverse stereo channels", "Hard -6dB limiter", "Convert stereo to 4 channels",
          "Upmix to 5.1", "Upmix to 7.1", "Advanced Limiter", "Downmix channels to mono", "Convert mono to stereo",
          "Move stereo to rear channels"}) {
        chain.push_back(make_effect(name));
    }
    random_source random(1);
    const std::vector<double> audio = noise(random, longest_block_frames * channels, 0.15);
    recycled_block block;
    std::size_t frames_in = 0;
    std::size_t frames_out = 0;
    std::uint64_t allocations_before = 0;
    std::size_t pages_before = 0;
    while (frames_in < total_frames) {
        if (allocations_before == 0 && frames_in > first_frames) {
            pages_before = resident_pages();
            allocations_before = allocations();
        }
        // The longest block comes twice at the start, because of the first one the limiter holds some frames back:
        // buffers grow to the largest need, and no further.
        const bool is_start = frames_in < 2 * longest_block_frames;
        const std::size_t frames = is_start ? longest_block_frames : pick(random, 1, longest_block_frames);
        block.refill(audio.data(), frames);
        const std::uint64_t allocations_until_now = allocations();
        for (const auto& effect : chain) {
            effect->run(&block, nullptr, 0);
        }
        if (frames_in == 0) { // only the module ran, and its buffers grew
            ASSERT_GT(allocations(), allocations_until_now) << "the counter does not see the module";
        }
        frames_in += frames;
        frames_out += block.get_sample_count();
    }
    EXPECT_EQ(allocations(), allocations_before);
    EXPECT_LE(resident_pages(), pages_before + 16);
    EXPECT_EQ(frames_out, frames_in - 255); // the limiter still holds these
    EXPECT_EQ(block.get_channels(), 2U);
    EXPECT_EQ(block.get_channel_mask(), 0x30U);
}

} // namespace
