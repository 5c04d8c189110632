// Conversion to a lower rate.
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

/// First the long filter, at `osf` times the input rate, then the polyphase stage from there to the output rate.
///
/// The long filter's input would be the stream with `osf` - 1 zeros between its frames. So each of `osf` shares of its
/// taps is a filter at the input rate of its own, and their outputs take turns.
class down_path {
public:
    /// Throws `bad_allocation`.
    down_path(const rate_plan& plan, const converter_quality& quality, std::size_t channels,
              const vector_kernels& kernels);

    /// Output frames at the start that hold nothing but the filters' delay.
    std::size_t frames_to_discard() const noexcept { return frames_to_discard_; }

    /// Input frames until the next block can run.
    std::size_t frames_wanted() const noexcept { return convolver_.block_frames() - frames_there_; }
    /// Where a channel's next frames belong: at most the wanted.
    double* next_frames(std::size_t channel) noexcept { return convolver_.input(channel, 0).data() + frames_there_; }
    /// Tells that so many frames of all channels are there.
    void take(std::size_t frames) noexcept { frames_there_ += frames; }

    /// Output frames of a block, at most.
    std::size_t most_block_frames() const noexcept { return outputs_.size(); }
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
    down_path(const rate_plan& plan, const filter_designs& designs, std::size_t channels,
              const vector_kernels& kernels);
    void set_filters(const low_pass& filter);
    void start() noexcept;
    double* held_values(std::size_t channel) noexcept { return held_.data() + channel * most_held_values_; }
    /// Appends the filter's output to what is held.
    void interleave(std::size_t channel, double* to) const noexcept;

    const vector_kernels* kernels_;
    std::uint32_t components_;
    polyphase_stage interpolation_;
    block_convolver convolver_;
    std::size_t frames_to_discard_;
    std::size_t lead_values_; ///< silent, before the stream's first
    std::size_t most_held_values_;
    aligned_array<double> held_; ///< the filter's output that the interpolation still reads, by channel
    aligned_array<double> outputs_;
    polyphase_position position_{}; ///< of the next output, from the first value held
    std::size_t values_there_ = 0;
    std::size_t frames_there_ = 0;
};

} // namespace kelvane::ssrc
