// A block of decoded audio.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace velmora {

/// Interleaved 64-bit floating-point samples (frame i, channel c at index i × channels + c) with their format. Full
/// scale is ±1.0. The block belongs to the host and is borrowed for the length of a call. A new block is empty: no
/// rate, no channels, no frames, any capacity. The samples lie at any address that suits a double.
class sample_block {
public:
    /// The samples for reading; null when there is no buffer. Valid until the next `set_data_size`. [playback-thread]
    virtual const double* get_data_ro() = 0;

    /// The samples for writing; the same buffer and lifetime as `get_data_ro`. [playback-thread]
    virtual double* get_data() = 0;

    /// Capacity of the buffer, in samples (not frames). [playback-thread]
    virtual size_t get_data_size() = 0;

    /// Makes the buffer hold at least `samples` samples and keeps its contents; it may move and need not shrink.
    /// Throws a bad allocation and then leaves the block as it was. [playback-thread]
    virtual void set_data_size(size_t samples) = 0;

    /// Frames per second. [playback-thread]
    virtual uint32_t get_sample_rate() = 0;

    virtual void set_sample_rate(uint32_t hz) = 0;

    /// Samples per frame. [playback-thread]
    virtual uint32_t get_channels() = 0;

    /// The speakers of the channels (channel_mask.h); its bit count may differ from the channel count.
    /// [playback-thread]
    virtual uint32_t get_channel_mask() = 0;

    /// Sets the channel count and the mask together. [playback-thread]
    virtual void set_channels(uint32_t count, uint32_t mask) = 0;

    /// Frames in the block. [playback-thread]
    virtual size_t get_sample_count() = 0;

    virtual void set_sample_count(size_t frames) = 0;

protected:
    ~sample_block() = default;
};

} // namespace velmora
