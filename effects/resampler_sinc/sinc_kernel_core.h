// The inner products of the windowed-sinc converter.
#pragma once

#include "effects/resampler_sinc/sinc_quality_core.h"

#include <cstddef>
#include <cstdint>

namespace kelvane {

/// A table of `fill_sinc_table`, at a multiple of 16 bytes, and how a time is cut into phase and fraction.
struct sinc_filter {
    const float* table;
    std::uint32_t taps;
    std::uint32_t phase_bits;
    std::uint32_t subphase_bits;
};

/// Output frames in a row. Time counts in input frames, in fixed point with phase_bits + subphase_bits behind the
/// point: an output frame at time t hears the window of `taps` floats that begins ⌊t⌋ floats before `windows`, newest
/// frame first, through the filter of the phase that the fraction of t names.
struct sinc_run {
    const float* windows;       ///< of the first channel at time 0
    std::size_t channel_floats; ///< from a channel's window to that of the next
    std::size_t channels;
    std::uint64_t time; ///< of the first output frame
    std::uint64_t step; ///< from one output frame to the next
    std::size_t frames;
};

/// Writes the frames of a run, interleaved. Each sample is the sum of history × coefficient in single precision, as
/// four partial sums of the taps j ≡ 0, 1, 2 and 3 (mod 4), added as (s0 + s2) + (s1 + s3).
using sinc_kernel = void (*)(const sinc_filter& filter, const sinc_run& run, double* out) noexcept;

/// The one for a window, a filter length and a count of channels. All of them give the same bits.
sinc_kernel pick_sinc_kernel(sinc_window window, std::uint32_t taps, std::size_t channels) noexcept;

} // namespace kelvane
