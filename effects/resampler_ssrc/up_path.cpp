#include "effects/resampler_ssrc/up_path.h"

#include <algorithm>

namespace kelvane::ssrc {

namespace {

/// Of a component: `length` taps dealt out to `components`, the first component beginning one round earlier.
std::size_t component_taps(std::int64_t length, std::uint32_t components) noexcept {
    return static_cast<std::size_t>(length - 1 + components - 1) / components + 1;
}

} // namespace

up_path::up_path(const rate_plan& plan, const converter_quality& quality, std::size_t channels,
                 const vector_kernels& kernels)
    : components_(plan.osf), phases_(plan.common_hz / plan.input_hz),
      component_ticks_(plan.common_hz / plan.filter_hz()), lead_ticks_(design_polyphase_filter(plan, quality).reach()),
      interpolation_(design_polyphase_filter(plan, quality), phases_, plan.common_hz / plan.output_hz, kernels),
      convolver_({components_, 1, component_taps(design_long_filter(plan, quality).length, components_), channels},
                 kernels) {
    const low_pass filter = design_long_filter(plan, quality);
    frames_to_discard_ = static_cast<std::size_t>(0.5 * static_cast<double>(filter.length) / components_);
    set_filters(filter);
    most_held_frames_ = convolver_.block_frames() * plan.input_hz / plan.output_hz + interpolation_.frames_read() + 4;
    held_ = aligned_array<double>(channels * most_held_frames_);
    start();
}

/// The value y(m) is the sum of tap(n) x(m osf - n), and x(j osf + r) is the component r's x(j).
void up_path::set_filters(const low_pass& filter) {
    const aligned_array<double> taps = filter.taps(1.0);
    aligned_array<double> share(component_taps(filter.length, components_));
    for (std::size_t component = 0; component < components_; ++component) {
        for (std::size_t i = 0; i < share.size(); ++i) {
            const std::size_t n = i * components_ - component; // wraps, and is then past the end
            share[i] = n < taps.size() ? taps[n] : 0.0;
        }
        convolver_.set_filter(component, 0, share.part(0, share.size()));
    }
}

/// As much silence before the stream as lets its first value meet the prototype's middle.
void up_path::start() noexcept {
    const std::int64_t silent_frames = (lead_ticks_ + phases_ - 1) / phases_;
    std::fill(held_.begin(), held_.end(), 0.0);
    frames_there_ = static_cast<std::size_t>(silent_frames);
    position_ticks_ = silent_frames * phases_ - lead_ticks_;
    frames_needed_ = frames_needed();
}

void up_path::reset() noexcept {
    convolver_.reset();
    start();
}

std::size_t up_path::frames_needed() const noexcept {
    const auto last_component =
        interpolation_.position_at(position_ticks_ + (components_ - 1) * std::int64_t{component_ticks_});
    const auto last = interpolation_.later(last_component, convolver_.block_frames() - 1);
    return std::max(last.frame + interpolation_.frames_read(), frames_there_);
}

double* up_path::next_frames(std::size_t channel) noexcept {
    return held_frames(channel) + frames_there_;
}

std::span<const double> up_path::run(std::size_t channel) noexcept {
    for (std::size_t component = 0; component < components_; ++component) {
        auto position =
            interpolation_.position_at(position_ticks_ + static_cast<std::int64_t>(component * component_ticks_));
        const std::span<double> values = convolver_.input(channel, component);
        interpolation_.run(position, held_frames(channel), values.data(), values.size());
    }
    convolver_.run(channel);
    return convolver_.output(0);
}

void up_path::next_block() noexcept {
    convolver_.next_block();
    const auto next = interpolation_.later(interpolation_.position_at(position_ticks_), convolver_.block_frames());
    for (std::size_t channel = 0; channel * most_held_frames_ < held_.size(); ++channel) {
        double* held = held_frames(channel);
        std::copy(held + next.frame, held + frames_there_, held);
    }
    frames_there_ -= next.frame;
    position_ticks_ = -std::int64_t{next.row};
    frames_needed_ = frames_needed();
}

} // namespace kelvane::ssrc
