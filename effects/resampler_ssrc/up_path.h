// Conversion to a higher rate.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/block_convolver.h"
#include "effects/resampler_ssrc/filter_design.h"
#include "effects/resampler_ssrc/polyphase_stage.h"
#include "effects/resampler_ssrc/rate_plan.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane::ssrc {

/// First the polyphase stage, from the input to `osf` times the output rate, then the long filter there.
///
/// Of the long filter's output every `osf`th value counts. So its input is taken as `osf` streams at the output rate
/// (its components), each with its own share of the taps, and only what counts is computed.
class up_path {
public:
    /// Throws `bad_allocation`.
    up_path(const rate_plan& plan, const converter_quality& quality, std::size_t channels,
            const vector_kernels& kernels);

    /// Output frames at the start that hold nothing but the filters' delay.
    std::size_t frames_to_discard() const noexcept { return frames_to_discard_; }

    /// Input frames until the next block can run.
    std::size_t frames_wanted() const noexcept { return frames_needed_ - frames_there_; }
    /// Where a channel's next frames belong: at most the wanted.
    double* next_frames(std::size_t channel) noexcept;
    /// Tells that so many frames of all channels are there.
    void take(std::size_t frames) noexcept { frames_there_ += frames; }

    /// Output frames of a block, at most.
    std::size_t most_block_frames() const noexcept { return convolver_.block_frames(); }
    /// Computes the block of some channels, when no more frames are wanted: a group begins at each multiple of
    /// `channels_together`.
    static constexpr std::size_t channels_together = block_convolver::channels_together;
    void run(std::size_t first_channel, std::size_t count) noexcept;
    /// The output of one of them. Valid until the next call.
    std::span<const double> output(std::size_t channel) noexcept;
    /// Goes on to the next block, when all channels have run.
    void next_block() noexcept;

    /// Forgets the signal.
    void reset() noexcept;

private:
    up_path(const rate_plan& plan, const filter_designs& designs, std::size_t channels, const vector_kernels& kernels);
    void set_filters(const low_pass& filter);
    void start() noexcept;
    void interpolate(std::size_t channel) noexcept;
    double* held_frames(std::size_t channel) noexcept { return held_.data() + channel * most_held_frames_; }
    std::size_t frames_needed() const noexcept;
    std::size_t block_values() const noexcept; ///< at the long filter's rate

    static constexpr std::size_t chunk_values = 256; ///< of a component, interpolated at a time

    const vector_kernels* kernels_;
    std::uint32_t components_;
    std::size_t silent_frames_; ///< before the stream
    std::int64_t first_ticks_;  ///< of the stream's first value, from the first silent frame
    polyphase_stage interpolation_;
    block_convolver convolver_;
    std::size_t frames_to_discard_;
    std::size_t most_held_frames_;
    aligned_array<double> held_; ///< the frames that the next block reads, by channel
    aligned_array<double> values_;
    polyphase_position position_{}; ///< of the next block's first value, from the first frame held
    std::size_t frames_there_ = 0;
    std::size_t frames_needed_ = 0;
};

} // namespace kelvane::ssrc
