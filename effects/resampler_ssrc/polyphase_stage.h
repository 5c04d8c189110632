// Interpolation of a stream at exact rational positions.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/filter_design.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>
#include <cstdint>

namespace kelvane::ssrc {

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

    /// Computes `count` outputs from the frames and moves the position on.
    void run(polyphase_position& position, const double* frames, double* out, std::size_t count) const noexcept;

private:
    std::int64_t ticks_of(polyphase_position position) const noexcept;
    void pick(polyphase_position& position, const double* frames, double* out, std::size_t count) const noexcept;

    bool copies_; ///< the prototype is a single tap of 1
    std::size_t taps_;
    std::size_t stride_;
    std::uint32_t phases_;
    std::uint32_t step_ticks_;
    const vector_kernels* kernels_;
    aligned_array<double> coefficients_; ///< `phases_` rows of `stride_`
};

} // namespace kelvane::ssrc
