#include "effects/resampler_sinc/sinc_kernel_core.h"

#include "effects/resampler_sinc/sinc_convolution_core.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

namespace {

/// Channels that are made together: the sums of more would not find room in the registers.
constexpr std::size_t most_channels = 4;
/// The same where three frames are made together.
constexpr std::size_t shared_channels = 2;

/// From this length on it pays to share the history between output frames.
constexpr std::size_t long_taps = 128;

template <class Row, class Channels, class Taps>
void run_one_by_one(const sinc_filter& filter, sinc_run run, Channels channels, Taps taps, double* out) noexcept {
    const sinc_clock<Taps> clock(filter, taps);
    for (; run.frames > 0; --run.frames) {
        const Row row(clock, run.time);
        const float* const window = run.windows - clock.frame(run.time);
        for_channel_groups<most_channels>(channels, [&](std::size_t first, auto count) {
            convolve<count()>(row, window + first * run.channel_floats, run.channel_floats, taps, out + first);
        });
        run.time += run.step;
        out += channels;
    }
}

struct planned_frame {
    std::uint64_t time;
    double* out;
};

/// The next output frames, in four lists by where their windows begin, counted modulo 4: neighbours of a list mostly
/// begin 4 input frames apart.
class frame_plan {
public:
    static constexpr std::size_t most_frames = 192;

    void clear() noexcept { counts_ = {}; }
    void add(std::uint64_t input_frame, const planned_frame& frame) noexcept {
        const std::size_t list = input_frame % 4;
        lists_[list][counts_[list]++] = frame;
    }
    std::span<const planned_frame> list(std::size_t index) const noexcept {
        return {lists_[index].data(), counts_[index]};
    }

private:
    std::array<std::array<planned_frame, most_frames>, 4> lists_;
    std::array<std::size_t, 4> counts_{};
};

/// Makes planned frames of a long filter, three at a time where their windows allow it.
template <class Row, class Channels>
class sharing_maker {
public:
    sharing_maker(const sinc_filter& filter, const sinc_run& run, Channels channels) noexcept
        : clock_(filter, filter.taps), run_(run), channels_(channels) {}

    void make(frame_plan& plan, std::size_t frames, double* out) noexcept {
        plan.clear();
        for (std::size_t left = frames; left > 0; --left) {
            plan.add(clock_.frame(run_.time), {run_.time, out});
            run_.time += run_.step;
            out += channels_;
        }
        for (std::size_t index = 0; index < 4; ++index) {
            make_all(plan.list(index));
        }
    }

private:
    void make_all(std::span<const planned_frame> list) const noexcept {
        while (!list.empty()) {
            const bool is_shared = list.size() >= 3 && begin_apart(list[0], list[1]) && begin_apart(list[1], list[2]);
            if (is_shared) {
                make_three(list.first<3>());
            } else {
                make_one(list[0]);
            }
            list = list.subspan(is_shared ? 3 : 1);
        }
    }
    bool begin_apart(const planned_frame& earlier, const planned_frame& later) const noexcept {
        return clock_.frame(later.time) - clock_.frame(earlier.time) == 4;
    }
    const float* window(const planned_frame& frame) const noexcept { return run_.windows - clock_.frame(frame.time); }

    void make_one(const planned_frame& frame) const noexcept {
        const Row row(clock_, frame.time);
        for_channel_groups<most_channels>(channels_, [&](std::size_t first, auto count) {
            convolve<count()>(row, window(frame) + first * run_.channel_floats, run_.channel_floats, clock_.taps,
                              frame.out + first);
        });
    }
    void make_three(std::span<const planned_frame, 3> frames) const noexcept {
        const std::array<Row, 3> rows{Row(clock_, frames[0].time), Row(clock_, frames[1].time),
                                      Row(clock_, frames[2].time)};
        for_channel_groups<shared_channels>(channels_, [&](std::size_t first, auto count) {
            convolve_three<count()>(rows, window(frames[2]) + first * run_.channel_floats, run_.channel_floats,
                                    clock_.taps, {frames[0].out + first, frames[1].out + first, frames[2].out + first});
        });
    }

    sinc_clock<std::size_t> clock_;
    sinc_run run_;
    Channels channels_;
};

template <class Row, class Channels>
void run_sharing(const sinc_filter& filter, const sinc_run& run, Channels channels, double* out) noexcept {
    sharing_maker<Row, Channels> maker(filter, run, channels);
    frame_plan plan;
    for (std::size_t done = 0; done < run.frames; done += frame_plan::most_frames) {
        maker.make(plan, std::min(run.frames - done, frame_plan::most_frames), out + done * channels);
    }
}

/// Where output frames lie closer together than that, few windows begin 4 frames apart.
bool are_windows_apart(const sinc_filter& filter, const sinc_run& run) noexcept {
    return run.step >= (std::uint64_t{3} << (filter.phase_bits + filter.subphase_bits)) / 4;
}

/// The count that the compiler knows; 0 stands for one that it does not.
template <std::size_t Known>
constexpr auto known_or(std::size_t otherwise) noexcept {
    if constexpr (Known == 0) {
        return otherwise;
    } else {
        return constant<Known>();
    }
}

template <class Row, std::size_t Channels, std::size_t Taps>
void one_by_one_kernel(const sinc_filter& filter, const sinc_run& run, double* out) noexcept {
    run_one_by_one<Row>(filter, run, known_or<Channels>(run.channels), known_or<Taps>(filter.taps), out);
}

template <class Row, std::size_t Channels>
void sharing_kernel(const sinc_filter& filter, const sinc_run& run, double* out) noexcept {
    if (are_windows_apart(filter, run)) {
        run_sharing<Row>(filter, run, known_or<Channels>(run.channels), out);
    } else {
        one_by_one_kernel<Row, Channels, 0>(filter, run, out);
    }
}

/// The filters of the lower levels when converting upwards are so short that it pays to unroll them.
template <class Row, std::size_t Channels>
sinc_kernel pick(std::uint32_t taps) noexcept {
    switch (taps) {
    case 4:
        return one_by_one_kernel<Row, Channels, 4>;
    case 8:
        return one_by_one_kernel<Row, Channels, 8>;
    case 16:
        return one_by_one_kernel<Row, Channels, 16>;
    default:
        return taps < long_taps ? one_by_one_kernel<Row, Channels, 0> : sharing_kernel<Row, Channels>;
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
