// Interpolation of a stream at exact rational positions.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/filter_design.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>
#include <cstdint>

namespace kelvane::ssrc {

/// Where an output lies on the input: the filter's tap number `row` falls on the frame number `frame`.
struct polyphase_position {
    std::size_t frame;
    std::uint32_t row;
};

/// A filter at the common multiple of two rates, of which only the taps that meet an input frame are evaluated.
///
/// A position p counts ticks of the common rate; a frame lasts `phases` of them. The output at p is the sum of frame(k)
/// x prototype(k x phases - p): the prototype starts at p and its middle lies (length - 1) ÷ 2 ticks later.
/// Source: R. E. Crochiere, L. R. Rabiner, "Multirate Digital Signal Processing", 1983.
///
/// Where outputs lie closer than frames, four of them share a window of frames and are computed together.
class polyphase_stage {
public:
    /// `phases` is the common rate ÷ the rate of the input, `step_ticks` the common rate ÷ the rate of the outputs,
    /// without a common divisor; the first output lies at `first_ticks`. The gain of the stage is 1. Throws
    /// `bad_allocation`.
    polyphase_stage(const low_pass& prototype, std::uint32_t phases, std::uint32_t step_ticks, std::int64_t first_ticks,
                    const vector_kernels& kernels);

    /// Taps of an output.
    std::size_t taps() const noexcept { return taps_; }
    /// Frames that have to be there from an output's position on; so many are read.
    std::size_t frames_read() const noexcept { return frames_read_; }

    /// `ticks` is above -`phases`.
    polyphase_position position_at(std::int64_t ticks) const noexcept;
    /// The position `steps` outputs later.
    polyphase_position later(polyphase_position position, std::size_t steps) const noexcept;
    /// How many outputs from the position on `frames` frames are enough for.
    std::size_t outputs_within(polyphase_position position, std::size_t frames) const noexcept;

    /// Computes `count` outputs from the position on. Going up, where the outputs are many, a multiple of 4 of them at
    /// a position that is a multiple of 4 outputs away from the first.
    void run(polyphase_position position, const double* frames, double* out, std::size_t count) const noexcept;

private:
    std::int64_t ticks_of(polyphase_position position) const noexcept;
    void make_cycle(const aligned_array<double>& taps, polyphase_position first);
    void write_output(const aligned_array<double>& taps, polyphase_position position, double* to,
                      std::size_t tap_step) const noexcept;
    void pick(std::size_t frame, const double* frames, double* out, std::size_t count) const noexcept;

    bool copies_; ///< the prototype is a single tap of 1
    std::size_t outputs_per_step_;
    std::size_t taps_;
    std::size_t frames_read_;
    std::uint32_t phases_;
    std::uint32_t step_ticks_;
    const vector_kernels* kernels_;
    // In the order of the steps, which repeat in cycles.
    aligned_array<double> coefficients_;
    aligned_array<std::uint32_t> offsets_;
    aligned_array<std::uint32_t> places_; ///< by the row of a step's first output
};

} // namespace kelvane::ssrc
