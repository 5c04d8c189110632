// The windowed-sinc sample-rate converter.
#pragma once

#include "effects/resampler_sinc/sinc_kernel_core.h"
#include "effects/resampler_sinc/sinc_quality_core.h"
#include "effects/resampler_sinc/sinc_table_core.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>

namespace kelvane {

/// Converts interleaved audio from one rate to another: each output frame is the input heard through a windowed sinc
/// (sinc_table_core.h) whose middle stands at that frame's time. Samples are rounded to 32-bit floats on their way in
/// and computed so.
///
/// The first output frames of a new converter, as many as its filter has sidelobes on one side, are never given out;
/// what is left of the filter's delay of taps ÷ 2 input frames is the caller's to deal with. The step in time from one
/// output frame to the next is rounded to fixed point of 22 or 24 bits, so that the output drifts against the exact
/// ratio of the rates, by a few frames an hour. It does not depend on how the input is cut into calls.
///
/// The method, a tabulated windowed sinc with linear interpolation between the places of the table, is that of J. O.
/// Smith and P. Gossett, "A flexible sampling-rate conversion method", IEEE Conference on Acoustics, Speech and Signal
/// Processing, 1984.
class sinc_resampler {
public:
    /// Whether neither rate is 0 and the filter's length and the step in time fit 32 bits.
    static bool is_feasible(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t quality) noexcept;

    /// Null when it is not feasible, memory is short or the step in time is rounded to 0, with which no output frame
    /// would be the last. `channels` is at least 1. A `quality` that is no index of `sinc_qualities` means "Normal".
    static std::unique_ptr<sinc_resampler> create(std::uint32_t input_hz, std::uint32_t output_hz,
                                                  std::uint32_t channels, std::uint32_t quality) noexcept;

    /// Consumes all frames of `in` (whole interleaved frames) and writes the output frames to the start of `out`, which
    /// has room for them (`output_room` frames are always enough). Answers the frames written.
    std::size_t process(std::span<const double> in, std::span<double> out) noexcept;

    /// The most output frames that a call with so many input frames (below 2^39) writes: (frames + 1) input frames ÷
    /// step, rounded up. That is ratio × (frames + 1), but up to 1.5 times as many where the step is rounded to 1.
    std::uint64_t output_room(std::uint64_t frames) const noexcept;

    /// For a seek: the time starts at 0 and the first output frames are withheld as at creation. The last `taps` input
    /// frames stay, in the order in which a ring that begins at its first place again would show them.
    void rewind() noexcept;

    /// The filter's length in input frames, a multiple of 4.
    std::uint32_t taps() const noexcept { return filter_.taps; }

    /// Output rate ÷ input rate.
    double ratio() const noexcept { return ratio_; }

private:
    static constexpr std::align_val_t memory_alignment{128};

    struct freeing {
        void operator()(float* memory) const noexcept { ::operator delete[](memory, memory_alignment); }
    };
    using aligned_floats = std::unique_ptr<float[], freeing>;

    sinc_resampler(const sinc_quality& quality, const sinc_design& design, double ratio, std::uint32_t channels,
                   aligned_floats memory) noexcept;
    static aligned_floats allocate(std::size_t floats) noexcept;

    float* window_of(std::size_t channel) noexcept { return histories_ + channel * history_floats_ + newest_; }
    void take_in(const double* in, std::size_t frames) noexcept;
    std::size_t give_out(std::size_t new_frames, double* out) noexcept;
    void make_room() noexcept;

    double ratio_;
    std::size_t channels_;
    aligned_floats memory_; ///< the table, and a history for each channel
    float* histories_;      ///< newest frame first
    std::size_t history_floats_;
    std::size_t newest_;           ///< place of the newest frame in each history; new ones go before it
    std::uint32_t ring_place_ = 0; ///< of the newest frame in a ring of `taps` places that is filled backwards
    std::uint32_t first_skip_;     ///< output frames
    std::uint32_t skip_;           ///< output frames that are still to be withheld
    std::uint64_t step_;           ///< from one output frame to the next, in fixed-point input frames
    std::uint64_t time_ = 0;       ///< of the next output frame, counted from the newest frame, which has 0
    sinc_filter filter_;
    sinc_kernel kernel_;
};

} // namespace kelvane
