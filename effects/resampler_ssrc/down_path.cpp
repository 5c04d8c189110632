#include "effects/resampler_ssrc/down_path.h"

#include <algorithm>
#include <array>

namespace kelvane::ssrc {

namespace {

/// Of a component: `length` taps dealt out to `components`.
std::size_t component_taps(std::int64_t length, std::uint32_t components) noexcept {
    return static_cast<std::size_t>(length - 1) / components + 1;
}

/// Half of both filters, in frames of output.
std::size_t delay_frames(const rate_plan& plan, const low_pass& filter, const low_pass& prototype) noexcept {
    const double output_hz = plan.output_hz;
    return static_cast<std::size_t>(0.5 * static_cast<double>(filter.length) / (filter.rate_hz / output_hz) +
                                    0.5 * static_cast<double>(prototype.length) / (prototype.rate_hz / output_hz));
}

} // namespace

down_path::down_path(const rate_plan& plan, const converter_quality& quality, std::size_t channels,
                     const vector_kernels& kernels)
    : down_path(plan, design_filters(plan, quality), channels, kernels) {}

down_path::down_path(const rate_plan& plan, const filter_designs& designs, std::size_t channels,
                     const vector_kernels& kernels)
    : kernels_(&kernels), components_(plan.osf),
      interpolation_(designs.prototype, plan.common_hz / plan.filter_hz(), plan.common_hz / plan.output_hz, 0, kernels),
      convolver_({1, components_, component_taps(designs.long_filter.length, components_), channels}, kernels),
      lead_values_(interpolation_.taps() + 1) {
    frames_to_discard_ = delay_frames(plan, designs.long_filter, designs.prototype);
    set_filters(designs.long_filter);
    const std::size_t block_values = convolver_.block_frames() * components_;
    most_held_values_ = lead_values_ + interpolation_.frames_read() + block_values;
    held_ = aligned_array<double>(channels * most_held_values_);
    outputs_ = aligned_array<double>(interpolation_.outputs_within({0, 0}, most_held_values_));
    start();
}

/// The value y(m osf + r) is the sum of tap(i osf + r) x(m - i). The gain makes up for the zeros between the frames.
void down_path::set_filters(const low_pass& filter) {
    const aligned_array<double> taps = filter.taps(components_);
    aligned_array<double> share(component_taps(filter.length, components_));
    for (std::size_t component = 0; component < components_; ++component) {
        for (std::size_t i = 0; i < share.size(); ++i) {
            const std::size_t n = i * components_ + component;
            share[i] = n < taps.size() ? taps[n] : 0.0;
        }
        convolver_.set_filter(0, component, share.part(0, share.size()));
    }
}

void down_path::start() noexcept {
    std::fill(held_.begin(), held_.end(), 0.0);
    values_there_ = lead_values_;
    position_ = {0, 0};
    frames_there_ = 0;
}

void down_path::reset() noexcept {
    convolver_.reset();
    start();
}

void down_path::interleave(std::size_t channel, double* to) const noexcept {
    std::array<const double*, convolution::most_outputs> sources{};
    for (std::size_t component = 0; component < components_; ++component) {
        sources[component] = convolver_.output(channel, component).data();
    }
    kernels_->interleave(sources.data(), components_, to, convolver_.block_frames());
}

void down_path::run(std::size_t first_channel, std::size_t count) noexcept {
    convolver_.run(first_channel, count);
}

std::span<const double> down_path::output(std::size_t channel) noexcept {
    interleave(channel, held_values(channel) + values_there_);
    const std::size_t values = values_there_ + convolver_.block_frames() * components_;
    const std::size_t count = interpolation_.outputs_within(position_, values);
    interpolation_.run(position_, held_values(channel), outputs_.data(), count);
    return {outputs_.data(), count};
}

void down_path::next_block() noexcept {
    convolver_.next_block();
    const std::size_t values = values_there_ + convolver_.block_frames() * components_;
    position_ = interpolation_.later(position_, interpolation_.outputs_within(position_, values));
    const std::size_t done = std::min(position_.frame, values);
    for (std::size_t channel = 0; channel * most_held_values_ < held_.size(); ++channel) {
        double* held = held_values(channel);
        std::copy(held + done, held + values, held);
    }
    position_.frame -= done;
    values_there_ = values - done;
    frames_there_ = 0;
}

} // namespace kelvane::ssrc
