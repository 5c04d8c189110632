// The inner products of an output frame of the windowed-sinc converter, as the kernels are built from them.
#pragma once

#include "effects/float_four_core.h"
#include "effects/resampler_sinc/sinc_kernel_core.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace kelvane {

// The functions are declared inline for the compiler's sake too: it then builds each kernel as one loop with all of its
// values in registers.

/// A count that the compiler knows. Where it does not, the kernels take a std::size_t in its place.
template <std::size_t Value>
using constant = std::integral_constant<std::size_t, Value>;

/// The fixed point of time, and the table whose rows it names.
template <class Taps>
struct sinc_clock {
    sinc_clock(const sinc_filter& filter, Taps filter_taps) noexcept
        : taps(filter_taps), table(filter.table), subphase_bits(filter.subphase_bits),
          frame_bits(filter.phase_bits + filter.subphase_bits), phase_mask((1U << filter.phase_bits) - 1),
          subphase_mask((1U << filter.subphase_bits) - 1),
          subphase_scale(1.0F / static_cast<float>(subphase_mask + 1)) {}

    std::uint64_t frame(std::uint64_t time) const noexcept { return time >> frame_bits; }
    std::uint64_t phase(std::uint64_t time) const noexcept { return (time >> subphase_bits) & phase_mask; }

    /// How far the time lies between its phase and the next.
    float fraction(std::uint64_t time) const noexcept {
        return static_cast<float>(static_cast<std::int32_t>(time & subphase_mask)) * subphase_scale;
    }

    Taps taps;
    const float* table;
    std::uint32_t subphase_bits;
    std::uint32_t frame_bits;
    std::uint32_t phase_mask;
    std::uint32_t subphase_mask;
    float subphase_scale;
};

/// The coefficients of one output frame: those of its phase.
class plain_row {
public:
    template <class Taps>
    plain_row(const sinc_clock<Taps>& clock, std::uint64_t time) noexcept
        : coefficients_(clock.table + clock.phase(time) * clock.taps) {}

    float_four at(std::size_t tap) const noexcept { return load_four_aligned(coefficients_ + tap); }

private:
    const float* coefficients_;
};

/// Those interpolated linearly between its phase and the next.
class interpolated_row {
public:
    template <class Taps>
    interpolated_row(const sinc_clock<Taps>& clock, std::uint64_t time) noexcept
        : coefficients_(clock.table + clock.phase(time) * 2 * clock.taps), deltas_(coefficients_ + clock.taps),
          fraction_(all_four(clock.fraction(time))) {}

    float_four at(std::size_t tap) const noexcept {
        return load_four_aligned(coefficients_ + tap) + fraction_ * load_four_aligned(deltas_ + tap);
    }

private:
    const float* coefficients_;
    const float* deltas_;
    float_four fraction_;
};

/// (s0 + s2) + (s1 + s3) of two channels, in the first two lanes.
inline float_four add_up(float_four first, float_four second) noexcept {
    const float_four halves = interleave_low(first, second) + interleave_high(first, second);
    return halves + high_halves(halves, halves);
}

template <std::size_t Channels>
inline void store_sums(const std::array<float_four, Channels>& sums, double* out) noexcept {
    for (std::size_t channel = 0; channel + 1 < Channels; channel += 2) {
        store_low_doubles(out + channel, add_up(sums[channel], sums[channel + 1]));
    }
    if constexpr (Channels % 2 == 1) {
        store_first_double(out + Channels - 1, add_up(sums.back(), sums.back()));
    }
}

/// Some neighbouring channels of one output frame: each coefficient is made once for all of them.
template <std::size_t Channels, class Row, class Taps>
inline void convolve(const Row& row, const float* window, std::size_t channel_floats, Taps taps, double* out) noexcept {
    std::array<float_four, Channels> sums{};
    for (std::size_t tap = 0; tap < taps; tap += 4) {
        const float_four coefficients = row.at(tap);
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            const float_four history = load_four(window + channel * channel_floats + tap);
            sums[channel] = sums[channel] + history * coefficients;
        }
    }
    store_sums(sums, out);
}

/// The same of three output frames whose windows begin 4 input frames apart, the earliest first; `window` is that of
/// the last. What they hear in common is loaded once. At least 8 taps.
template <std::size_t Channels, class Row>
inline void convolve_three(const std::array<Row, 3>& rows, const float* window, std::size_t channel_floats,
                           std::size_t taps, const std::array<double*, 3>& outs) noexcept {
    constexpr std::size_t lead = 8;
    std::array<std::array<float_four, Channels>, 3> sums{};
    const auto add = [&](std::size_t place, std::size_t first_frame, std::size_t last_frame) {
        std::array<float_four, Channels> history;
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            history[channel] = load_four(window + channel * channel_floats + place);
        }
        for (std::size_t frame = first_frame; frame <= last_frame; ++frame) {
            const float_four coefficients = rows[frame].at(place + 4 * frame - lead);
            for (std::size_t channel = 0; channel < Channels; ++channel) {
                sums[frame][channel] = sums[frame][channel] + history[channel] * coefficients;
            }
        }
    };
    add(0, 2, 2);
    add(4, 1, 2);
    for (std::size_t place = lead; place < taps; place += 4) {
        add(place, 0, 2);
    }
    add(taps, 0, 1);
    add(taps + 4, 0, 0);
    for (std::size_t frame = 0; frame < 3; ++frame) {
        store_sums(sums[frame], outs[frame]);
    }
}

/// Calls `make(first channel, constant<channels>())` for groups of `Most` channels and, for what is left from `first`
/// on, smaller ones.
template <std::size_t Most, class Channels, class Make>
inline void for_channel_groups(Channels channels, const Make& make, std::size_t first = 0) noexcept {
    for (; channels - first >= Most; first += Most) {
        make(first, constant<Most>());
    }
    if constexpr (Most > 1) {
        for_channel_groups<Most - 1>(channels, make, first);
    }
}

} // namespace kelvane
