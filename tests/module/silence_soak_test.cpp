// Ten hours of silence through "Skip Silence", in blocks of any length.
#include "tests/module/allocation_counter.h"
#include "tests/module/resident_pages.h"
#include "tests/support/built_module.h"
#include "tests/support/signals.h"
#include "velmora/block_list.h"
#include "velmora/sample_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t rate_hz = 8000;
constexpr std::size_t total_frames = std::size_t{10} * 3600 * rate_hz;
constexpr std::size_t longest_block_frames = 20'000;
constexpr std::size_t first_frames = std::size_t{60} * rate_hz; ///< by then everything has its final size
constexpr std::size_t shortest_blocks_frames = 50;              ///< in that time

/// Mono of one rate.
class plain_block final : public velmora::sample_block {
public:
    plain_block() : samples_(longest_block_frames) {}

    const double* get_data_ro() override { return samples_.data(); }
    double* get_data() override { return samples_.data(); }
    std::size_t get_data_size() override { return samples_.size(); }
    void set_data_size(std::size_t) override { ADD_FAILURE() << "there is room for the longest block"; }
    std::uint32_t get_sample_rate() override { return rate_hz; }
    void set_sample_rate(std::uint32_t hz) override { ASSERT_EQ(hz, rate_hz); }
    std::uint32_t get_channels() override { return 1; }
    std::uint32_t get_channel_mask() override { return 0x4; }
    void set_channels(std::uint32_t count, std::uint32_t mask) override {
        ASSERT_EQ(count, 1U);
        ASSERT_EQ(mask, 0x4U);
    }
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override { frames_ = frames; }

private:
    std::vector<double> samples_;
    std::size_t frames_ = 0;
};

/// A list whose blocks come from a stock, so that every allocation seen is the module's.
class stocked_list final : public velmora::block_list {
public:
    stocked_list() {
        constexpr std::size_t blocks = 4096;
        listed_.reserve(blocks);
        stock_.reserve(blocks);
    }

    std::size_t get_count() override { return listed_.size(); }
    velmora::sample_block* get_item(std::size_t index) override { return listed_.at(index).get(); }
    void remove_item(std::size_t index) override {
        stock_.push_back(std::move(listed_.at(index)));
        listed_.erase(listed_.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void remove_all() override { FAIL() << "the module never does that"; }
    velmora::sample_block* insert_item(std::size_t index, std::size_t) override {
        const auto place = listed_.begin() + static_cast<std::ptrdiff_t>(index);
        return listed_.insert(place, take_from_stock())->get();
    }

    void append(const double* samples, std::size_t frames) {
        velmora::sample_block& block = *insert_item(listed_.size(), frames);
        std::copy_n(samples, frames, block.get_data());
        block.set_sample_count(frames);
    }

    /// Gives the blocks back to the stock; answers their frames.
    std::size_t take_all() {
        std::size_t frames = 0;
        while (!listed_.empty()) {
            frames += listed_.back()->get_sample_count();
            remove_item(listed_.size() - 1);
        }
        return frames;
    }

private:
    std::unique_ptr<plain_block> take_from_stock() {
        if (stock_.empty()) {
            return std::make_unique<plain_block>();
        }
        auto taken = std::move(stock_.back());
        stock_.pop_back();
        return taken;
    }

    std::vector<std::unique_ptr<plain_block>> listed_;
    std::vector<std::unique_ptr<plain_block>> stock_;
};

host::service_ptr<velmora::effect_instance> make_skipper_of_twenty_seconds() {
    const host::effect_entry& effect = built_effects().find("Skip Silence");
    host::preset settings = effect.default_preset;
    const std::array<std::uint8_t, 12> payload{0x20, 0x4E, 0, 0, 0xC4, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0};
    settings.set_data(payload.data(), payload.size());
    return host::instantiate(effect, settings);
}

TEST(SilenceSoak, ASegmentCostsOneAllocationAlsoInSmallBlocks) {
    const auto effect = make_skipper_of_twenty_seconds();
    const std::vector<double> silence(shortest_blocks_frames, 1e-4);
    stocked_list list;
    list.append(silence.data(), silence.size());
    list.take_all();                      // the stock has its block
    constexpr std::size_t segments = 200; // all are held back
    constexpr std::size_t blocks = segments * (rate_hz / 10) / shortest_blocks_frames;
    const std::uint64_t allocations_before = allocations();
    for (std::size_t i = 0; i < blocks; ++i) {
        list.append(silence.data(), silence.size());
        effect->run(&list, nullptr, 0);
    }
    // Two rings, of 200 segments and 3200 pieces, have grown beside: from 4 places to 256 and 4096.
    EXPECT_EQ(allocations() - allocations_before, segments + 7 + 11);
    EXPECT_NEAR(effect->get_latency(), 20.0, 1e-9);
}

TEST(SilenceSoak, TenHoursOfSilenceAreCutInFlatMemoryWithoutAnAllocation) {
    const auto effect = make_skipper_of_twenty_seconds();
    random_source random(1);
    const std::vector<double> silence = noise(random, longest_block_frames, 1e-4);
    stocked_list list;
    std::size_t frames_in = 0;
    std::size_t frames_out = 0;
    std::uint64_t allocations_before = 0;
    std::size_t pages_before = 0;
    double longest_latency_s = 0.0;
    while (frames_in < total_frames) {
        if (allocations_before == 0 && frames_in > first_frames) {
            pages_before = resident_pages();
            allocations_before = allocations();
        }
        const std::size_t lengths[] = {200, 5000, longest_block_frames};
        const std::size_t longest = frames_in < first_frames ? shortest_blocks_frames : lengths[pick(random, 0, 2)];
        const std::size_t frames =
            frames_in == 0 ? longest_block_frames : std::min(pick(random, 1, longest), total_frames - frames_in);
        list.append(silence.data(), frames);
        effect->run(&list, nullptr, 0);
        frames_in += frames;
        frames_out += list.take_all();
        longest_latency_s = std::max(longest_latency_s, effect->get_latency());
    }
    EXPECT_EQ(allocations(), allocations_before);
    EXPECT_LE(resident_pages(), pages_before + 16);
    EXPECT_LE(longest_latency_s, 20.0 + 1e-9);
    effect->run(&list, nullptr, velmora::run_flag::end_of_playback);
    frames_out += list.take_all();
    EXPECT_EQ(frames_out, (200 + 1) * rate_hz / 10); // what is kept, and one that fades out
    EXPECT_EQ(effect->get_latency(), 0.0);
}

} // namespace
