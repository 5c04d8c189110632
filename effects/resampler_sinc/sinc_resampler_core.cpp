#include "effects/resampler_sinc/sinc_resampler_core.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvane {

namespace {

/// Frames that are taken in before output is made of them. What this writes and reads in two channels stays in the
/// first-level cache.
constexpr std::size_t chunk_frames = 1024;

constexpr double taps_limit = 4294967291.0;
constexpr double step_limit = 4294967295.0;

double ratio_of(std::uint32_t input_hz, std::uint32_t output_hz) noexcept {
    return static_cast<double>(output_hz) / input_hz;
}

/// One input frame, in the converter's fixed point.
constexpr std::uint64_t one_frame(std::uint32_t phase_bits, std::uint32_t subphase_bits) noexcept {
    return std::uint64_t{1} << (phase_bits + subphase_bits);
}

/// One output frame in that fixed point, before it is rounded.
double exact_step(const sinc_quality& quality, double ratio) noexcept {
    return static_cast<double>(one_frame(quality.phase_bits, quality.subphase_bits)) / ratio;
}

std::uint64_t rounded_step(const sinc_quality& quality, double ratio) noexcept {
    return static_cast<std::uint64_t>(std::floor(exact_step(quality, ratio) + 0.5));
}

} // namespace

bool sinc_resampler::is_feasible(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t quality) noexcept {
    if (input_hz == 0 || output_hz == 0) {
        return false;
    }
    const sinc_quality& level = sinc_quality_at(quality);
    const double ratio = ratio_of(input_hz, output_hz);
    return needed_sinc_taps(level, ratio) < taps_limit && exact_step(level, ratio) < step_limit;
}

std::unique_ptr<sinc_resampler> sinc_resampler::create(std::uint32_t input_hz, std::uint32_t output_hz,
                                                       std::uint32_t channels, std::uint32_t quality) noexcept {
    if (!is_feasible(input_hz, output_hz, quality)) {
        return nullptr;
    }
    const sinc_quality& level = sinc_quality_at(quality);
    const double ratio = ratio_of(input_hz, output_hz);
    if (rounded_step(level, ratio) == 0) {
        return nullptr;
    }
    const sinc_design design = design_sinc(level, ratio);
    const std::size_t history_floats = design.taps + chunk_frames;
    aligned_floats memory = allocate(design.table_floats() + history_floats * channels);
    if (memory == nullptr) {
        return nullptr;
    }
    fill_sinc_table(design, {memory.get(), design.table_floats()});
    std::fill_n(memory.get() + design.table_floats(), history_floats * channels, 0.0F);
    return std::unique_ptr<sinc_resampler>(new (std::nothrow)
                                               sinc_resampler(level, design, ratio, channels, std::move(memory)));
}

sinc_resampler::aligned_floats sinc_resampler::allocate(std::size_t floats) noexcept {
    void* const memory = ::operator new[](floats * sizeof(float), memory_alignment, std::nothrow);
    return aligned_floats(static_cast<float*>(memory));
}

sinc_resampler::sinc_resampler(const sinc_quality& quality, const sinc_design& design, double ratio,
                               std::uint32_t channels, aligned_floats memory) noexcept
    : ratio_(ratio), channels_(channels), memory_(std::move(memory)), histories_(memory_.get() + design.table_floats()),
      history_floats_(design.taps + chunk_frames), newest_(chunk_frames), first_skip_(quality.sidelobes),
      skip_(quality.sidelobes), step_(rounded_step(quality, ratio)), filter_{memory_.get(), design.taps,
                                                                             quality.phase_bits, quality.subphase_bits},
      kernel_(pick_sinc_kernel(design.window, design.taps, channels)) {}

std::uint64_t sinc_resampler::output_room(std::uint64_t frames) const noexcept {
    const std::uint64_t end = (frames + 1) * one_frame(filter_.phase_bits, filter_.subphase_bits);
    return (end - 1) / step_ + 1;
}

std::size_t sinc_resampler::process(std::span<const double> in, std::span<double> out) noexcept {
    std::size_t given = 0;
    while (!in.empty()) {
        if (newest_ == 0) {
            make_room();
        }
        const std::size_t frames = std::min(in.size() / channels_, newest_);
        take_in(in.data(), frames);
        given += give_out(frames, out.data() + given * channels_);
        in = in.subspan(frames * channels_);
    }
    return given;
}

/// Moves the newest frames from the front of the histories to their back.
void sinc_resampler::make_room() noexcept {
    for (std::size_t channel = 0; channel < channels_; ++channel) {
        float* const history = histories_ + channel * history_floats_;
        std::copy_backward(history, history + filter_.taps, history + history_floats_);
    }
    newest_ = chunk_frames;
}

void sinc_resampler::take_in(const double* in, std::size_t frames) noexcept {
    newest_ -= frames;
    for (std::size_t channel = 0; channel < channels_; ++channel) {
        float* const window = window_of(channel);
        for (std::size_t frame = 0; frame < frames; ++frame) {
            window[frames - 1 - frame] = static_cast<float>(in[frame * channels_ + channel]);
        }
    }
    const auto moved = static_cast<std::uint32_t>(frames % filter_.taps);
    ring_place_ = (ring_place_ + filter_.taps - moved) % filter_.taps;
}

/// An output frame is due as long as no more than the `new_frames` lie before its time.
std::size_t sinc_resampler::give_out(std::size_t new_frames, double* out) noexcept {
    const std::uint64_t frame = one_frame(filter_.phase_bits, filter_.subphase_bits);
    const std::uint64_t end = (new_frames + 1) * frame;
    const std::uint64_t due = time_ < end ? (end - 1 - time_) / step_ + 1 : 0;
    const std::uint64_t withheld = std::min<std::uint64_t>(due, skip_);
    kernel_(filter_,
            {.windows = window_of(0) + new_frames,
             .channel_floats = history_floats_,
             .channels = channels_,
             .time = time_ + withheld * step_,
             .step = step_,
             .frames = due - withheld},
            out);
    skip_ -= static_cast<std::uint32_t>(withheld);
    time_ += due * step_ - new_frames * frame;
    return due - withheld;
}

void sinc_resampler::rewind() noexcept {
    for (std::size_t channel = 0; channel < channels_; ++channel) {
        float* const window = window_of(channel);
        std::rotate(window, window + (filter_.taps - ring_place_) % filter_.taps, window + filter_.taps);
    }
    ring_place_ = 0;
    time_ = 0;
    skip_ = first_skip_;
}

} // namespace kelvane
