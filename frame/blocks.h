// What effects ask of a host's block, and how they fill one.
#pragma once

#include "velmora/sample_block.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

/// The format of a stream of blocks; it can change from one block to the next, and nothing else announces it.
struct stream_format {
    std::uint32_t sample_rate_hz = 0;
    std::uint32_t channels = 0;
    std::uint32_t channel_mask = 0;

    bool operator==(const stream_format&) const = default;
};

stream_format format_of(velmora::sample_block& block);

/// The limits of `is_valid_block`.
inline constexpr std::uint32_t max_block_channels = 32;
inline constexpr std::uint32_t min_block_rate_hz = 1000;
inline constexpr std::uint32_t max_block_rate_hz = 20'000'000;
inline constexpr std::size_t block_size_limit_bytes = 2'147'483'648;

/// Whether rate, channels and frames are all above zero. The base takes other blocks out of the list.
bool is_block_with_audio(velmora::sample_block& block);

/// Whether the samples that the block claims are there: a buffer, and room in it for channels × frames. A block that
/// fails this must not be read; most effects pass it on unchanged.
bool has_samples(velmora::sample_block& block);

/// Whether the block holds front left and front right, and nothing else.
bool is_stereo(velmora::sample_block& block);

/// The stricter test of effects that must reject bad input: `has_samples`, 1 to 32 channels, 1 kHz to 20 MHz, at least
/// one frame, and less than 2 GiB.
bool is_valid_block(velmora::sample_block& block);

/// The block's samples, interleaved, for reading. Only for a block that `has_samples`.
std::span<const double> samples_of(velmora::sample_block& block);

/// The block's samples, interleaved, for writing in place. Only for a block that `has_samples`.
std::span<double> mutable_samples_of(velmora::sample_block& block);

/// Gives the block new samples in another layout, at its old rate. `write` gets the block's buffer, a span of frames ×
/// channels samples whose values count for nothing, and fills it. Throws a bad allocation of the host and then leaves
/// the block as it was.
template <class Write>
void rewrite_block(velmora::sample_block& block, std::size_t frames, std::uint32_t channels, std::uint32_t channel_mask,
                   Write write) {
    const std::uint32_t rate_hz = block.get_sample_rate();
    block.set_data_size(frames * channels);
    write(std::span<double>(block.get_data(), frames * channels));
    block.set_sample_count(frames);
    block.set_channels(channels, channel_mask);
    block.set_sample_rate(rate_hz);
}

/// The same with samples that lie ready, and not in the block; without any (null) the block is filled with silence.
void rewrite_block(velmora::sample_block& block, const double* samples, std::size_t frames, std::uint32_t channels,
                   std::uint32_t channel_mask);

/// Fills a new block with audio. `write` gets the block's buffer, a span of `frames` × channels samples whose values
/// count for nothing, and fills it. Throws a bad allocation of the host, before `write` is called.
template <class Write>
void fill_block(velmora::sample_block& block, std::size_t frames, const stream_format& format, Write write) {
    const std::size_t samples = frames * format.channels;
    if (block.get_data_size() < samples) {
        block.set_data_size(samples);
    }
    write(std::span<double>(block.get_data(), samples));
    block.set_channels(format.channels, format.channel_mask);
    block.set_sample_rate(format.sample_rate_hz);
    block.set_sample_count(frames);
}

} // namespace kelvane
