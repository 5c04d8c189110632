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
/// x prototype(k x phases - p): the prototype starts at p and its middle lies (length - 1) ÷ 2 ticks later. Source: R.
/// E. Crochiere, L. R. Rabiner, "Multirate Digital Signal Processing", 1983.
class polyphase_stage {
public:
    /// `phases` is the common rate ÷ the rate of the input, `step_ticks` the common rate ÷ the rate of the outputs. The
    /// gain of the stage is 1. Throws `bad_allocation`.
    polyphase_stage(const low_pass& prototype, std::uint32_t phases, std::uint32_t step_ticks,
                    const vector_kernels& kernels);

    /// Taps of an output: it reads `taps()` frames from its position's on.
    std::size_t taps() const noexcept { return taps_; }
    /// The same with the zeros that fill them up: that many frames have to be there.
    std::size_t frames_read() const noexcept { return stride_; }

    /// `ticks` is above -`phases`.
    polyphase_position position_at(std::int64_t ticks) const noexcept;
    /// The position `steps` outputs later.
    polyphase_position later(polyphase_position position, std::size_t steps) const noexcept;
    /// How many outputs from the position on `frames` frames are enough for.
    std::size_t outputs_within(polyphase_position position, std::size_t frames) const noexcept;

    /// Computes `count` outputs from the position on.
    void run(polyphase_position position, const double* frames, double* out, std::size_t count) const noexcept;

private:
    std::int64_t ticks_of(polyphase_position position) const noexcept;
    void make_cycle(const low_pass& prototype);
    void pick(std::size_t frame, const double* frames, double* out, std::size_t count) const noexcept;

    bool copies_; ///< the prototype is a single tap of 1
    std::size_t taps_;
    std::size_t stride_;
    std::uint32_t phases_;
    std::uint32_t step_ticks_;
    const vector_kernels* kernels_;
    // In the order of the outputs, whose rows repeat after `phases_` outputs.
    aligned_array<double> coefficients_;
    aligned_array<std::uint32_t> offsets_;
    aligned_array<std::uint32_t> cycle_places_; ///< by row
};

} // namespace kelvane::ssrc
