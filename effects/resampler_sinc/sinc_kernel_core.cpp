#include "effects/resampler_sinc/sinc_kernel_core.h"

#include "effects/float_four_core.h"

#include <array>
#include <type_traits>

// The innermost functions are declared inline for the compiler's sake: it then builds each kernel as one loop with all
// of its values in registers.

namespace kelvane {

namespace {

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

/// Those on the straight line from its phase to the next.
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

/// Calls `make(first channel, constant<channels>())` for groups of up to four channels: the sums of more would not find
/// room in the registers.
template <class Channels, class Make>
inline void for_channel_groups(Channels channels, const Make& make) noexcept {
    std::size_t first = 0;
    for (; channels - first >= 4; first += 4) {
        make(first, constant<4>());
    }
    switch (channels - first) {
    case 1:
        return make(first, constant<1>());
    case 2:
        return make(first, constant<2>());
    case 3:
        return make(first, constant<3>());
    default:
        return;
    }
}

template <class Row, class Channels, class Taps>
void run_frames(const sinc_filter& filter, sinc_run run, Channels channels, Taps taps, double* out) noexcept {
    const sinc_clock<Taps> clock(filter, taps);
    for (; run.frames > 0; --run.frames) {
        const Row row(clock, run.time);
        const float* const window = run.windows - clock.frame(run.time);
        for_channel_groups(channels, [&](std::size_t first, auto count) {
            convolve<count()>(row, window + first * run.channel_floats, run.channel_floats, taps, out + first);
        });
        run.time += run.step;
        out += channels;
    }
}

/// A kernel for known counts; a count of 0 is read from the run.
template <class Row, std::size_t Channels, std::size_t Taps>
void run_kernel(const sinc_filter& filter, const sinc_run& run, double* out) noexcept {
    const auto known_or = [](auto known, std::size_t otherwise) {
        if constexpr (known() == 0) {
            return otherwise;
        } else {
            return known;
        }
    };
    run_frames<Row>(filter, run, known_or(constant<Channels>(), run.channels), known_or(constant<Taps>(), filter.taps),
                    out);
}

/// The filters of the lower levels when converting upwards are so short that it pays to unroll them.
template <class Row, std::size_t Channels>
sinc_kernel pick(std::uint32_t taps) noexcept {
    switch (taps) {
    case 4:
        return run_kernel<Row, Channels, 4>;
    case 8:
        return run_kernel<Row, Channels, 8>;
    case 16:
        return run_kernel<Row, Channels, 16>;
    default:
        return run_kernel<Row, Channels, 0>;
    }
}

template <class Row>
sinc_kernel pick(std::uint32_t taps, std::size_t channels) noexcept {
    switch (channels) {
    case 1:
        return pick<Row, 1>(taps);
    case 2:
        return pick<Row, 2>(taps);
    default:
        return pick<Row, 0>(taps);
    }
}

} // namespace

sinc_kernel pick_sinc_kernel(sinc_window window, std::uint32_t taps, std::size_t channels) noexcept {
    return window == sinc_window::kaiser ? pick<interpolated_row>(taps, channels) : pick<plain_row>(taps, channels);
}

} // namespace kelvane
