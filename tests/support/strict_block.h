// Blocks and lists that do all that a host is allowed to do, so that a module that relies on more is found out.
#pragma once

#include "velmora/block_list.h"
#include "velmora/sample_block.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace testing_support {

struct block_format {
    std::uint32_t sample_rate_hz;
    std::uint32_t channels;
    std::uint32_t channel_mask;

    bool operator==(const block_format&) const = default;
};

/// Moves its samples at every growth, fills new room with what is not a number, and lies at an odd multiple of eight
/// bytes. It can refuse to grow, or claim more than it has. A block made with room only has no format and no frames.
class strict_block final : public velmora::sample_block {
public:
    strict_block() = default;
    explicit strict_block(std::size_t capacity_samples);
    strict_block(std::span<const double> samples, const block_format& format);
    strict_block(const strict_block&) = delete;
    strict_block& operator=(const strict_block&) = delete;

    const double* get_data_ro() override;
    double* get_data() override;
    std::size_t get_data_size() override { return capacity_; }
    void set_data_size(std::size_t samples) override;
    std::uint32_t get_sample_rate() override { return format_.sample_rate_hz; }
    void set_sample_rate(std::uint32_t hz) override;
    std::uint32_t get_channels() override { return format_.channels; }
    std::uint32_t get_channel_mask() override { return format_.channel_mask; }
    void set_channels(std::uint32_t count, std::uint32_t mask) override;
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override;

    /// From now on every growth throws std::bad_alloc.
    void refuse_growth() noexcept { refuses_growth_ = true; }

    /// Claims `frames` frames without having their samples.
    void claim_frames(std::size_t frames) noexcept { frames_ = frames; }

    /// Has no buffer any more; the claims stay.
    void drop_buffer() noexcept;

    const block_format& format() const noexcept { return format_; }

    /// The samples of the block's frames.
    std::vector<double> samples() const;

    /// Calls that changed anything, since the block was made.
    int changes() const noexcept { return changes_; }

    /// Calls of `set_data_size`, since the block was made.
    int resizes() const noexcept { return resizes_; }

private:
    void reallocate(std::size_t samples);

    std::unique_ptr<double[]> memory_; ///< one more than the capacity, for the odd address
    double* first_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t frames_ = 0;
    block_format format_{};
    bool refuses_growth_ = false;
    int changes_ = 0;
    int resizes_ = 0;
};

/// Frees a removed block at once and says when an index is out of range. The hint is no promise: the blocks that it
/// inserts have in turn no room at all, room for a sample less than that, exactly that, and plenty.
class strict_list final : public velmora::block_list {
public:
    std::size_t get_count() override { return blocks_.size(); }
    velmora::sample_block* get_item(std::size_t index) override { return blocks_.at(index).get(); }
    void remove_item(std::size_t index) override;
    void remove_all() override;
    velmora::sample_block* insert_item(std::size_t index, std::size_t samples_hint) override;

    /// Puts a block behind the last one.
    strict_block& append(std::span<const double> samples, const block_format& format);

    strict_block& at(std::size_t index) { return *blocks_.at(index); }

    /// Inserts so many blocks more; then `insert_item` throws std::bad_alloc.
    void refuse_after(std::size_t insertions) noexcept { insertions_left_ = insertions; }

    /// The same, but then it inserts blocks without room that refuse to grow.
    void refuse_room_after(std::size_t insertions) noexcept { roomy_insertions_left_ = insertions; }

    void refuse_no_more() noexcept { insertions_left_ = roomy_insertions_left_ = unlimited; }

private:
    std::unique_ptr<strict_block> make_block(std::size_t samples_hint);
    std::size_t next_capacity(std::size_t samples_hint);

    static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

    std::size_t insertions_ = 0;
    std::size_t insertions_left_ = unlimited;
    std::size_t roomy_insertions_left_ = unlimited;
    std::vector<std::unique_ptr<strict_block>> blocks_;
};

} // namespace testing_support
