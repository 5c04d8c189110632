// A list that allocates nothing, so that every allocation seen is the module's.
#pragma once

#include "tests/support/strict_block.h"
#include "velmora/block_list.h"
#include "velmora/sample_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace testing_support {

/// A block whose room is there from the start.
class roomy_block final : public velmora::sample_block {
public:
    void make_room(std::size_t samples) { samples_.resize(samples); }

    const double* get_data_ro() override { return samples_.data(); }
    double* get_data() override { return samples_.data(); }
    std::size_t get_data_size() override { return samples_.size(); }
    void set_data_size(std::size_t samples) override { ASSERT_LE(samples, samples_.size()); }
    std::uint32_t get_sample_rate() override { return format_.sample_rate_hz; }
    void set_sample_rate(std::uint32_t hz) override { format_.sample_rate_hz = hz; }
    std::uint32_t get_channels() override { return format_.channels; }
    std::uint32_t get_channel_mask() override { return format_.channel_mask; }
    void set_channels(std::uint32_t count, std::uint32_t mask) override {
        format_.channels = count;
        format_.channel_mask = mask;
    }
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override { frames_ = frames; }

private:
    std::vector<double> samples_;
    block_format format_{};
    std::size_t frames_ = 0;
};

/// Uses a handful of blocks again and again.
class recycling_list final : public velmora::block_list {
public:
    /// Each block has room for `block_samples`; what is appended has `format`.
    recycling_list(std::size_t block_samples, const block_format& format) : format_(format) {
        for (roomy_block& block : blocks_) {
            block.make_room(block_samples);
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
        block.set_sample_rate(format_.sample_rate_hz);
        block.set_channels(format_.channels, format_.channel_mask);
        block.set_sample_count(samples.size() / format_.channels);
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
    block_format format_;
    std::array<roomy_block, 6> blocks_;
    std::vector<roomy_block*> free_;
    std::vector<roomy_block*> used_;
};

} // namespace testing_support
