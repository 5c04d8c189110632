#include "effects/resampler_sinc/sinc_kernel_core.h"

#include "effects/float_four_core.h"

#include <array>

namespace kelvane {

namespace {

/// The coefficients of one output frame without a fraction of a phase.
class plain_row {
public:
    plain_row(const sinc_filter& filter, std::uint64_t time) noexcept
        : coefficients_(filter.table + ((time & mask(filter)) >> filter.subphase_bits) * filter.taps) {}

    float_four at(std::size_t tap) const noexcept { return load_four_aligned(coefficients_ + tap); }

private:
    static std::uint64_t mask(const sinc_filter& filter) noexcept {
        return (std::uint64_t{1} << (filter.phase_bits + filter.subphase_bits)) - 1;
    }
    const float* coefficients_;
};

/// Those on the straight line to the next phase.
class interpolated_row {
public:
    interpolated_row(const sinc_filter& filter, std::uint64_t time) noexcept : deltas_offset_(filter.taps) {
        const std::uint64_t one = 1;
        const std::uint64_t phase = (time >> filter.subphase_bits) & ((one << filter.phase_bits) - 1);
        const std::uint64_t subphase = time & ((one << filter.subphase_bits) - 1);
        const float scale = 1.0F / static_cast<float>(one << filter.subphase_bits);
        coefficients_ = filter.table + phase * 2 * filter.taps;
        fraction_ = all_four(static_cast<float>(static_cast<std::int32_t>(subphase)) * scale);
    }

    float_four at(std::size_t tap) const noexcept {
        const float* const coefficients = coefficients_ + tap;
        return load_four_aligned(coefficients) + fraction_ * load_four_aligned(coefficients + deltas_offset_);
    }

private:
    const float* coefficients_;
    std::size_t deltas_offset_;
    float_four fraction_;
};

/// The partial sums of some neighbouring channels.
template <class Row, std::size_t Channels>
std::array<float_four, Channels> convolve(const Row& row, const float* windows, std::size_t channel_floats,
                                          std::size_t taps) noexcept {
    std::array<float_four, Channels> sums{};
    for (std::size_t tap = 0; tap < taps; tap += 4) {
        const float_four coefficients = row.at(tap);
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            sums[channel] = sums[channel] + load_four(windows + channel * channel_floats + tap) * coefficients;
        }
    }
    return sums;
}

/// (s0 + s2) + (s1 + s3) of two channels, in the first two lanes.
float_four add_up(float_four first, float_four second) noexcept {
    const float_four halves = interleave_low(first, second) + interleave_high(first, second);
    return halves + high_halves(halves, halves);
}

template <class Row>
void run_stereo(const sinc_filter& filter, const sinc_run& run, double* out) noexcept {
    const std::uint32_t time_bits = filter.phase_bits + filter.subphase_bits;
    std::uint64_t time = run.time;
    for (std::size_t frame = 0; frame < run.frames; ++frame) {
        const Row row(filter, time);
        const auto sums = convolve<Row, 2>(row, run.windows - (time >> time_bits), run.channel_floats, filter.taps);
        store_low_doubles(out, add_up(sums[0], sums[1]));
        out += 2;
        time += run.step;
    }
}

template <class Row>
void run_any(const sinc_filter& filter, const sinc_run& run, double* out) noexcept {
    const std::uint32_t time_bits = filter.phase_bits + filter.subphase_bits;
    std::uint64_t time = run.time;
    for (std::size_t frame = 0; frame < run.frames; ++frame) {
        const Row row(filter, time);
        const float* window = run.windows - (time >> time_bits);
        for (std::size_t channel = 0; channel < run.channels; ++channel) {
            const auto sums = convolve<Row, 1>(row, window, run.channel_floats, filter.taps);
            store_first_double(out, add_up(sums[0], sums[0]));
            window += run.channel_floats;
            ++out;
        }
        time += run.step;
    }
}

} // namespace

sinc_kernel pick_sinc_kernel(sinc_window window, std::uint32_t, std::size_t channels) noexcept {
    if (window == sinc_window::kaiser) {
        return channels == 2 ? run_stereo<interpolated_row> : run_any<interpolated_row>;
    }
    return channels == 2 ? run_stereo<plain_row> : run_any<plain_row>;
}

} // namespace kelvane
