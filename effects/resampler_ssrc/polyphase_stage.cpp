#include "effects/resampler_ssrc/polyphase_stage.h"

#include <numeric>

namespace kelvane::ssrc {

namespace {

constexpr std::size_t lanes = 4;
/// Beyond, the coefficients of four outputs at a time would take more memory than they are worth.
constexpr std::uint32_t most_phases_by_four = 4096;

std::size_t taps_for(std::int64_t length, std::uint32_t phases) noexcept {
    return length == 1 ? 1 : static_cast<std::size_t>(length) / phases + 1;
}

std::size_t round_up(std::size_t value, std::size_t multiple) noexcept {
    return (value + multiple - 1) / multiple * multiple;
}

/// One output fills up whole vectors; four read as many frames more as there are between the first and the last.
std::size_t frames_read_by(std::size_t outputs, std::size_t taps, std::uint32_t phases,
                           std::uint32_t step_ticks) noexcept {
    if (outputs == 1) {
        return round_up(taps, lanes);
    }
    const std::size_t more = ((outputs - 1) * step_ticks + phases - 1) / phases;
    return taps + more;
}

} // namespace

polyphase_stage::polyphase_stage(const low_pass& prototype, std::uint32_t phases, std::uint32_t step_ticks,
                                 std::int64_t first_ticks, const vector_kernels& kernels)
    : copies_(prototype.length == 1),
      outputs_per_step_(step_ticks < phases && phases <= most_phases_by_four ? lanes : 1),
      taps_(taps_for(prototype.length, phases)),
      frames_read_(copies_ ? 1 : frames_read_by(outputs_per_step_, taps_, phases, step_ticks)), phases_(phases),
      step_ticks_(step_ticks), kernels_(&kernels) {
    if (!copies_) {
        make_cycle(prototype.taps(phases), position_at(first_ticks));
    }
}

/// As the rates' multiple is their least, the outputs go through all rows before they repeat.
void polyphase_stage::make_cycle(const aligned_array<double>& taps, polyphase_position first) {
    const std::size_t steps = phases_ / std::gcd(std::size_t{phases_}, outputs_per_step_);
    coefficients_ = aligned_array<double>(steps * frames_read_ * outputs_per_step_);
    offsets_ = aligned_array<std::uint32_t>(steps);
    places_ = aligned_array<std::uint32_t>(phases_);
    for (std::size_t step = 0; step < steps; ++step) {
        double* numbers = coefficients_.data() + step * frames_read_ * outputs_per_step_;
        const polyphase_position start = later(first, step * outputs_per_step_);
        offsets_[step] = static_cast<std::uint32_t>(start.frame - first.frame);
        places_[start.row] = static_cast<std::uint32_t>(step);
        for (std::size_t output = 0; output < outputs_per_step_; ++output) {
            const polyphase_position position = later(start, output);
            const std::size_t lead = position.frame - start.frame;
            write_output(taps, position, numbers + lead * outputs_per_step_ + output, outputs_per_step_);
        }
    }
}

void polyphase_stage::write_output(const aligned_array<double>& taps, polyphase_position position, double* to,
                                   std::size_t tap_step) const noexcept {
    for (std::size_t n = position.row; n < taps.size(); n += phases_) {
        *to = taps[n];
        to += tap_step;
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
    if (frames < position.frame + frames_read_) {
        return 0;
    }
    const std::int64_t last_ticks = static_cast<std::int64_t>(frames - frames_read_) * phases_;
    return static_cast<std::size_t>((last_ticks - ticks_of(position)) / step_ticks_) + 1;
}

void polyphase_stage::run(polyphase_position position, const double* frames, double* out,
                          std::size_t count) const noexcept {
    if (copies_) {
        pick(position.frame, frames, out, count);
        return;
    }
    const std::size_t steps = offsets_.size();
    const polyphase_tables tables{coefficients_.data(), offsets_.data(), frames_read_, steps,
                                  steps * outputs_per_step_ * step_ticks_ / phases_};
    const std::uint32_t place = places_[position.row];
    const polyphase_cursor cursor{place, static_cast<std::ptrdiff_t>(position.frame) -
                                             static_cast<std::ptrdiff_t>(offsets_[place])};
    const auto kernel = outputs_per_step_ == 1 ? kernels_->polyphase : kernels_->polyphase_by_four;
    kernel(tables, cursor, frames, out, count);
}

/// A single tap of 1: every so many frames one passes.
void polyphase_stage::pick(std::size_t frame, const double* frames, double* out, std::size_t count) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = frames[frame + i * step_ticks_];
    }
}

} // namespace kelvane::ssrc
