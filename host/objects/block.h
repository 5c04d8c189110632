// A block of audio that the host owns.
#pragma once

#include "velmora/sample_block.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace host {

class block final : public velmora::sample_block {
public:
    block() = default;

    /// A block of whole frames; `samples` are interleaved and copied.
    block(std::span<const double> samples, std::uint32_t sample_rate_hz, std::uint32_t channels,
          std::uint32_t channel_mask);

    const double* get_data_ro() override { return samples_.data(); }
    double* get_data() override { return samples_.data(); }
    std::size_t get_data_size() override { return samples_.size(); }
    void set_data_size(std::size_t samples) override;
    std::uint32_t get_sample_rate() override { return sample_rate_hz_; }
    void set_sample_rate(std::uint32_t hz) override { sample_rate_hz_ = hz; }
    std::uint32_t get_channels() override { return channels_; }
    std::uint32_t get_channel_mask() override { return channel_mask_; }
    void set_channels(std::uint32_t count, std::uint32_t mask) override;
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t frames) override { frames_ = frames; }

    /// The samples of the block's frames.
    std::span<const double> samples() const noexcept { return {samples_.data(), frames_ * channels_}; }

private:
    std::vector<double> samples_;
    std::size_t frames_ = 0;
    std::uint32_t sample_rate_hz_ = 0;
    std::uint32_t channels_ = 0;
    std::uint32_t channel_mask_ = 0;
};

} // namespace host
