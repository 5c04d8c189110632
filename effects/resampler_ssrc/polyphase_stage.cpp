#include "effects/resampler_ssrc/polyphase_stage.h"

namespace kelvane::ssrc {

namespace {

constexpr std::size_t lanes = 4;

std::size_t taps_for(std::int64_t length, std::uint32_t phases) noexcept {
    return length == 1 ? 1 : static_cast<std::size_t>(length) / phases + 1;
}

/// Rows are filled up to whole vectors.
std::size_t round_up_to_lanes(std::size_t taps) noexcept {
    return (taps + lanes - 1) / lanes * lanes;
}

} // namespace

polyphase_stage::polyphase_stage(const low_pass& prototype, std::uint32_t phases, std::uint32_t step_ticks,
                                 const vector_kernels& kernels)
    : copies_(prototype.length == 1), taps_(taps_for(prototype.length, phases)),
      stride_(copies_ ? 1 : round_up_to_lanes(taps_)), phases_(phases), step_ticks_(step_ticks), kernels_(&kernels),
      coefficients_(copies_ ? 0 : stride_ * phases) {
    if (copies_) {
        return;
    }
    const aligned_array<double> taps = prototype.taps(phases);
    for (std::size_t n = 0; n < taps.size(); ++n) {
        coefficients_[n % phases * stride_ + n / phases] = taps[n];
    }
}

polyphase_position polyphase_stage::position_at(std::int64_t ticks) const noexcept {
    const std::int64_t frame = (ticks + phases_ - 1) / phases_;
    return {static_cast<std::size_t>(frame), static_cast<std::uint32_t>(frame * phases_ - ticks)};
}

std::int64_t polyphase_stage::ticks_of(polyphase_position position) const noexcept {
    return static_cast<std::int64_t>(position.frame) * phases_ - position.row;
}

polyphase_position polyphase_stage::later(polyphase_position position, std::size_t steps) const noexcept {
    return position_at(ticks_of(position) + static_cast<std::int64_t>(steps) * step_ticks_);
}

std::size_t polyphase_stage::outputs_within(polyphase_position position, std::size_t frames) const noexcept {
    if (frames < position.frame + stride_) {
        return 0;
    }
    const std::int64_t last_ticks = static_cast<std::int64_t>(frames - stride_) * phases_;
    return static_cast<std::size_t>((last_ticks - ticks_of(position)) / step_ticks_) + 1;
}

void polyphase_stage::run(polyphase_position& position, const double* frames, double* out,
                          std::size_t count) const noexcept {
    if (copies_) {
        pick(position, frames, out, count);
        return;
    }
    const polyphase_tables tables{coefficients_.data(), stride_, phases_, step_ticks_ / phases_, step_ticks_ % phases_};
    kernels_->polyphase(tables, position, frames, out, count);
}

/// A single tap of 1: every so many frames one passes.
void polyphase_stage::pick(polyphase_position& position, const double* frames, double* out,
                           std::size_t count) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = frames[position.frame + i * step_ticks_];
    }
    position.frame += count * step_ticks_;
}

} // namespace kelvane::ssrc
