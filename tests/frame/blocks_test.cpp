#include "frame/blocks.h"

#include "tests/support/strict_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

namespace kelvane {
namespace {

using testing_support::block_format;
using testing_support::strict_block;

constexpr std::size_t most = std::numeric_limits<std::size_t>::max();

/// A block that lies about everything.
class claiming_block final : public velmora::sample_block {
public:
    claiming_block(std::uint32_t rate_hz, std::uint32_t channels, std::size_t frames, std::size_t capacity,
                   bool has_buffer = true)
        : rate_hz_(rate_hz), channels_(channels), frames_(frames), capacity_(capacity), has_buffer_(has_buffer) {}

    const double* get_data_ro() override { return has_buffer_ ? &sample_ : nullptr; }
    double* get_data() override { return has_buffer_ ? &sample_ : nullptr; }
    std::size_t get_data_size() override { return capacity_; }
    void set_data_size(std::size_t) override {}
    std::uint32_t get_sample_rate() override { return rate_hz_; }
    void set_sample_rate(std::uint32_t) override {}
    std::uint32_t get_channels() override { return channels_; }
    std::uint32_t get_channel_mask() override { return 0; }
    void set_channels(std::uint32_t, std::uint32_t) override {}
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t) override {}

private:
    double sample_ = 0.0;
    std::uint32_t rate_hz_;
    std::uint32_t channels_;
    std::size_t frames_;
    std::size_t capacity_;
    bool has_buffer_;
};

TEST(Blocks, ValidWithinTheLimitsAndNotBeyond) {
    struct row {
        std::uint32_t rate_hz;
        std::uint32_t channels;
        std::size_t frames;
        std::size_t capacity;
        bool is_valid;
    };
    const row table[] = {
        {44100, 2, 100, 200, true},
        {1000, 1, 1, 1, true},
        {999, 1, 1, 1, false},
        {20'000'000, 1, 1, 1, true},
        {20'000'001, 1, 1, 1, false},
        {44100, 0, 1, 100, false},
        {44100, 32, 1, 32, true},
        {44100, 33, 1, 33, false},
        {44100, 2, 0, 200, false},
        {44100, 2, 100, 199, false},
        {44100, 1, 268'435'455, most, true}, // one frame less than 2 GiB
        {44100, 1, 268'435'456, most, false},
        {44100, 3, 89'478'485, most, true}, // 8 bytes less than 2 GiB
        {44100, 3, 89'478'486, most, false},
        {44100, 32, 8'388'607, most, true},
        {44100, 32, 8'388'608, most, false},
        {44100, 2, most, most, false},
    };
    for (const row& line : table) {
        claiming_block block(line.rate_hz, line.channels, line.frames, line.capacity);
        EXPECT_EQ(is_valid_block(block), line.is_valid)
            << line.rate_hz << " Hz, " << line.channels << " channels, " << line.frames << " of " << line.capacity;
    }
    claiming_block without_buffer(44100, 2, 100, 200, false);
    EXPECT_FALSE(is_valid_block(without_buffer));
}

TEST(Blocks, SamplesAreThereOnlyIfTheBufferHoldsThem) {
    struct row {
        std::uint32_t channels;
        std::size_t frames;
        std::size_t capacity;
        bool has_buffer;
        bool expected;
    };
    const row table[] = {
        {2, 100, 200, true, true},
        {2, 100, 199, true, false},
        {2, 100, 200, false, false},
        {4'000'000'000, 1, most, true, true},
        {2, most / 2 + 1, most, true, false}, // the product wraps to 0
        {3, most / 3 + 1, 2, true, false},
        {0, 1, 100, true, false},
    };
    for (const row& line : table) {
        claiming_block block(44100, line.channels, line.frames, line.capacity, line.has_buffer);
        EXPECT_EQ(has_samples(block), line.expected)
            << line.channels << " x " << line.frames << " in " << line.capacity;
    }
}

TEST(Blocks, RewritingKeepsTheRate) {
    const std::vector<double> mono{1.0, 2.0};
    strict_block block(mono, {96000, 1, 0x4});
    const std::vector<double> stereo{1.0, -1.0, 2.0, -2.0};
    rewrite_block(block, stereo.data(), 2, 2, 0x3);
    EXPECT_EQ(block.samples(), stereo);
    EXPECT_EQ(block.format(), (block_format{96000, 2, 0x3}));
}

TEST(Blocks, RewritingWithoutSamplesGivesSilence) {
    const std::vector<double> mono{1.0, 2.0};
    strict_block block(mono, {96000, 1, 0x4});
    rewrite_block(block, nullptr, 2, 3, 0x7);
    EXPECT_EQ(block.samples(), std::vector<double>(6, 0.0));
}

TEST(Blocks, ARewriteThatTheHostRefusesChangesNothing) {
    const std::vector<double> mono{1.0, 2.0};
    strict_block block(mono, {96000, 1, 0x4});
    block.refuse_growth();
    const std::vector<double> stereo(4, 0.5);
    EXPECT_THROW(rewrite_block(block, stereo.data(), 2, 2, 0x3), std::bad_alloc);
    EXPECT_EQ(block.samples(), mono);
    EXPECT_EQ(block.format(), (block_format{96000, 1, 0x4}));
}

TEST(Blocks, ANewBlockIsFilledWhateverRoomItHas) {
    const std::vector<double> stereo{1.0, -1.0, 2.0, -2.0, 3.0, -3.0};
    struct row {
        std::size_t capacity;
        int resizes;
    };
    for (const row& line : {row{0, 1}, row{1, 1}, row{5, 1}, row{6, 0}, row{100, 0}}) {
        strict_block block(line.capacity);
        fill_block(block, 3, {48000, 2, 0x30}, [&](std::span<double> filled) {
            ASSERT_EQ(filled.size(), stereo.size()) << line.capacity;
            std::copy(stereo.begin(), stereo.end(), filled.begin());
        });
        ASSERT_TRUE(has_samples(block)) << line.capacity;
        EXPECT_EQ(block.samples(), stereo) << line.capacity;
        EXPECT_EQ(block.format(), (block_format{48000, 2, 0x30})) << line.capacity;
        EXPECT_EQ(block.resizes(), line.resizes) << line.capacity;
    }
}

} // namespace
} // namespace kelvane
