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
      coefficients_(copies_ ? 0 : stride_ * (phases + lanes - 1)), offsets_(copies_ ? 0 : phases + lanes - 1),
      cycle_places_(copies_ ? 0 : phases) {
    if (!copies_) {
        make_cycle(prototype);
    }
}

/// A cycle begins with row 0. As the rates' multiple is their least, every row comes once.
void polyphase_stage::make_cycle(const low_pass& prototype) {
    const aligned_array<double> taps = prototype.taps(phases_);
    for (std::size_t place = 0; place < offsets_.size(); ++place) {
        const polyphase_position position = later({0, 0}, place);
        offsets_[place] = static_cast<std::uint32_t>(position.frame);
        if (place < phases_) {
            cycle_places_[position.row] = static_cast<std::uint32_t>(place);
        }
        for (std::size_t n = position.row, tap = 0; n < taps.size(); n += phases_, ++tap) {
            coefficients_[place * stride_ + tap] = taps[n];
        }
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

void polyphase_stage::run(polyphase_position position, const double* frames, double* out,
                          std::size_t count) const noexcept {
    if (copies_) {
        pick(position.frame, frames, out, count);
        return;
    }
    const polyphase_tables tables{coefficients_.data(), offsets_.data(), stride_, phases_, step_ticks_};
    const std::uint32_t place = cycle_places_[position.row];
    const auto cycle_frame = static_cast<std::ptrdiff_t>(position.frame) - static_cast<std::ptrdiff_t>(offsets_[place]);
    kernels_->polyphase(tables, {place, cycle_frame}, frames, out, count);
}

/// A single tap of 1: every so many frames one passes.
void polyphase_stage::pick(std::size_t frame, const double* frames, double* out, std::size_t count) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = frames[frame + i * step_ticks_];
    }
}

} // namespace kelvane::ssrc
