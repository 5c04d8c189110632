#include "effects/resampler_ssrc/up_path.h"

#include <algorithm>
#include <array>

namespace kelvane::ssrc {

namespace {

/// Of a component: `length` taps dealt out to `components`, the first component beginning one round earlier.
std::size_t component_taps(std::int64_t length, std::uint32_t components) noexcept {
    return static_cast<std::size_t>(length - 1 + components - 1) / components + 1;
}

/// Silence before the stream, so that its first value meets the prototype's middle.
struct lead_in {
    std::size_t frames;
    std::int64_t position_ticks; ///< of the first value, from the first silent frame
};

lead_in lead_in_of(const rate_plan& plan, const low_pass& prototype) noexcept {
    const std::int64_t phases = plan.common_hz / plan.input_hz;
    const std::int64_t frames = (prototype.reach() + phases - 1) / phases;
    return {static_cast<std::size_t>(frames), frames * phases - prototype.reach()};
}

} // namespace

up_path::up_path(const rate_plan& plan, const converter_quality& quality, std::size_t channels,
                 const vector_kernels& kernels)
    : up_path(plan, design_filters(plan, quality), channels, kernels) {}

up_path::up_path(const rate_plan& plan, const filter_designs& designs, std::size_t channels,
                 const vector_kernels& kernels)
    : kernels_(&kernels), components_(plan.osf), silent_frames_(lead_in_of(plan, designs.prototype).frames),
      first_ticks_(lead_in_of(plan, designs.prototype).position_ticks),
      interpolation_(designs.prototype, plan.common_hz / plan.input_hz, plan.common_hz / plan.filter_hz(), first_ticks_,
                     kernels),
      convolver_({components_, 1, component_taps(designs.long_filter.length, components_), channels}, kernels),
      values_(components_ * chunk_values) {
    frames_to_discard_ = static_cast<std::size_t>(0.5 * static_cast<double>(designs.long_filter.length) / components_);
    set_filters(designs.long_filter);
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

void up_path::start() noexcept {
    std::fill(held_.begin(), held_.end(), 0.0);
    frames_there_ = silent_frames_;
    position_ = interpolation_.position_at(first_ticks_);
    frames_needed_ = frames_needed();
}

void up_path::reset() noexcept {
    convolver_.reset();
    start();
}

std::size_t up_path::block_values() const noexcept {
    return convolver_.block_frames() * components_;
}

std::size_t up_path::frames_needed() const noexcept {
    const auto last = interpolation_.later(position_, block_values() - 1);
    return std::max(last.frame + interpolation_.frames_read(), frames_there_);
}

double* up_path::next_frames(std::size_t channel) noexcept {
    return held_frames(channel) + frames_there_;
}

void up_path::run(std::size_t first_channel, std::size_t count) noexcept {
    for (std::size_t channel = first_channel; channel < first_channel + count; ++channel) {
        interpolate(channel);
    }
    convolver_.run(first_channel, count);
}

std::span<const double> up_path::output(std::size_t channel) noexcept {
    return convolver_.output(channel, 0);
}

void up_path::interpolate(std::size_t channel) noexcept {
    const std::size_t chunk = std::min(chunk_values, convolver_.block_frames());
    for (std::size_t done = 0; done < convolver_.block_frames(); done += chunk) {
        const polyphase_position position = interpolation_.later(position_, done * components_);
        interpolation_.run(position, held_frames(channel), values_.data(), chunk * components_);
        std::array<double*, convolution::most_inputs> components{};
        for (std::size_t component = 0; component < components_; ++component) {
            components[component] = convolver_.input(channel, component).data() + done;
        }
        kernels_->deinterleave(values_.data(), components.data(), components_, chunk);
    }
}

void up_path::next_block() noexcept {
    convolver_.next_block();
    position_ = interpolation_.later(position_, block_values());
    const std::size_t done = position_.frame;
    for (std::size_t channel = 0; channel * most_held_frames_ < held_.size(); ++channel) {
        double* held = held_frames(channel);
        std::copy(held + done, held + frames_there_, held);
    }
    frames_there_ -= done;
    position_.frame = 0;
    frames_needed_ = frames_needed();
}

} // namespace kelvane::ssrc
