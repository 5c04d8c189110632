#include "frame/blocks.h"

#include "velmora/channel_mask.h"

#include <algorithm>

namespace kelvane {

namespace {

std::size_t sample_count_of(velmora::sample_block& block) {
    return block.get_sample_count() * block.get_channels();
}

} // namespace

stream_format format_of(velmora::sample_block& block) {
    return {block.get_sample_rate(), block.get_channels(), block.get_channel_mask()};
}

bool is_block_with_audio(velmora::sample_block& block) {
    return block.get_channels() != 0 && block.get_sample_rate() != 0 && block.get_sample_count() != 0;
}

bool has_samples(velmora::sample_block& block) {
    const std::uint32_t channels = block.get_channels();
    return block.get_data_ro() != nullptr && channels != 0 &&
           block.get_sample_count() <= block.get_data_size() / channels;
}

bool is_stereo(velmora::sample_block& block) {
    return block.get_channels() == 2 && block.get_channel_mask() == velmora::layout::stereo;
}

bool is_valid_block(velmora::sample_block& block) {
    const std::uint32_t channels = block.get_channels();
    if (channels < 1 || channels > max_block_channels) {
        return false;
    }
    const std::uint32_t rate_hz = block.get_sample_rate();
    if (rate_hz < min_block_rate_hz || rate_hz > max_block_rate_hz) {
        return false;
    }
    const std::size_t frames = block.get_sample_count();
    return frames >= 1 && frames <= (block_size_limit_bytes - 1) / (channels * sizeof(double)) && has_samples(block);
}

std::span<const double> samples_of(velmora::sample_block& block) {
    return {block.get_data_ro(), sample_count_of(block)};
}

std::span<double> mutable_samples_of(velmora::sample_block& block) {
    return {block.get_data(), sample_count_of(block)};
}

void rewrite_block(velmora::sample_block& block, const double* samples, std::size_t frames, std::uint32_t channels,
                   std::uint32_t channel_mask) {
    rewrite_block(block, frames, channels, channel_mask, [samples](std::span<double> filled) {
        if (samples != nullptr) {
            std::copy_n(samples, filled.size(), filled.begin());
        } else {
            std::fill(filled.begin(), filled.end(), 0.0);
        }
    });
}

} // namespace kelvane
