#include "effects/resampler_sinc/sinc_stream.h"

#include "effects/resampler_sinc/stream_edges_core.h"
#include "frame/exceptions.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr std::size_t most_held_frames = most_edge_frames;
constexpr std::size_t first_plan_frames = 4096;
constexpr std::size_t plan_growth_frames = 1024;

} // namespace

sinc_stream::sinc_stream(std::uint32_t input_hz, std::uint32_t target_hz, std::uint32_t channels, std::uint32_t quality)
    : totals_{.input_hz = input_hz, .target_hz = target_hz}, channels_(channels),
      resampler_(sinc_resampler::create(input_hz, target_hz, channels, quality)) {
    if (!resampler_) {
        throw bad_allocation();
    }
    make_room(first_plan_frames);
    held_.grow_to_frames(most_held_frames, channels_);
    edge_.grow_to_frames(most_edge_frames, channels_);
}

void sinc_stream::push(std::span<const double> frames, const sink& out) {
    totals_.in_frames += frames_in(frames);
    if (!is_primed_) {
        frames = hold(frames);
        if (held_frames_ < most_held_frames) {
            return;
        }
        give(prime(), out);
    }
    const std::size_t all_frames = held_frames_ + frames_in(frames);
    const std::size_t surplus_frames = all_frames - std::min(all_frames, most_held_frames);
    const std::size_t surplus_held_frames = std::min(surplus_frames, held_frames_);
    give(convert(held().first(surplus_held_frames * channels_)), out);
    release(surplus_held_frames);
    const std::size_t surplus_new_frames = surplus_frames - surplus_held_frames;
    give(convert(frames.first(surplus_new_frames * channels_)), out);
    hold(frames.subspan(surplus_new_frames * channels_));
}

/// Holds as many frames as there is room for and answers the others.
std::span<const double> sinc_stream::hold(std::span<const double> frames) noexcept {
    const std::size_t taken_frames = std::min(frames_in(frames), most_held_frames - held_frames_);
    const std::size_t taken_samples = taken_frames * channels_;
    std::copy_n(frames.begin(), taken_samples, held_.data() + held_frames_ * channels_);
    held_frames_ += taken_frames;
    return frames.subspan(taken_samples);
}

/// Forgets the oldest held frames.
void sinc_stream::release(std::size_t frames) noexcept {
    const std::span<const double> kept = held().subspan(frames * channels_);
    std::copy(kept.begin(), kept.end(), held_.data());
    held_frames_ -= frames;
}

/// Converts the pre-roll. What comes of it is discarded, as far as the count of what is discarded goes: all of it,
/// unless the step's rounding is coarse, as it is at ratios above some 16000.
std::span<const double> sinc_stream::prime() {
    const std::span<double> pre_roll(edge_.data(), held_frames_ * channels_);
    fill_before(held(), channels_, pre_roll);
    discarded_frames_ = start_delay_frames();
    is_primed_ = true;
    return convert(pre_roll);
}

/// What comes out before the stream's first frame: the pre-roll, and going up the converter's delay.
std::size_t sinc_stream::start_delay_frames() const {
    const double ratio = resampler_->ratio();
    std::size_t frames = to_count(static_cast<double>(held_frames_) * ratio + 0.5, channels_);
    if (ratio > 1.0) {
        const double half_window = resampler_->taps() / 2.0;
        frames += to_count(std::floor(half_window * (ratio - 1.0) + ratio), channels_);
    }
    return frames;
}

void sinc_stream::finish(std::span<double> out) {
    if (!is_primed_) {
        out = put(prime(), out);
    }
    const std::span<double> tail(edge_.data(), most_edge_frames * channels_);
    std::fill(tail.begin(), tail.end(), 0.0);
    const std::size_t run_out_frames = std::min(held_frames_, frames_in(out));
    fill_after(held(), channels_, tail.first(run_out_frames * channels_));
    out = put(convert(held()), out);
    push_out(tail, out);
}

/// Converts the tail, and silence behind it, until `out` is full.
void sinc_stream::push_out(std::span<double> tail, std::span<double> out) {
    std::span<const double> left = tail;
    while (!out.empty()) {
        const std::size_t wanted_frames = input_frames_for(frames_in(out) + discarded_frames_);
        const auto pushed = left.first(std::min(wanted_frames * channels_, left.size()));
        out = put(convert(pushed), out);
        left = left.subspan(pushed.size());
        if (left.empty()) {
            std::fill(tail.begin(), tail.end(), 0.0);
            left = tail;
        }
    }
}

/// At most what an edge holds.
std::size_t sinc_stream::input_frames_for(std::size_t output_frames) const noexcept {
    const double frames = std::ceil(static_cast<double>(output_frames) / resampler_->ratio()) + 1.0;
    return static_cast<std::size_t>(std::min(frames, static_cast<double>(most_edge_frames)));
}

void sinc_stream::make_room(std::size_t input_frames) {
    converted_.grow(room_samples(resampler_->ratio(), input_frames, channels_));
    planned_frames_ = input_frames;
}

/// What comes of the frames and is not to be discarded, in the work buffer until the next call.
std::span<const double> sinc_stream::convert(std::span<const double> frames) {
    const std::size_t count = frames_in(frames);
    if (count > planned_frames_) {
        make_room(count + count % plan_growth_frames); // more by the remainder, not up to the next multiple
    }
    const std::size_t made = resampler_->process(frames, {converted_.data(), converted_.capacity()});
    const std::size_t discarded = std::min(made, discarded_frames_);
    discarded_frames_ -= discarded;
    return {converted_.data() + discarded * channels_, (made - discarded) * channels_};
}

void sinc_stream::give(std::span<const double> made, const sink& out) {
    if (!made.empty()) {
        out(made);
        totals_.out_frames += frames_in(made);
    }
}

/// Copies as much as there is room for and answers the room that is left.
std::span<double> sinc_stream::put(std::span<const double> made, std::span<double> room) noexcept {
    const std::size_t taken = std::min(made.size(), room.size());
    std::copy_n(made.begin(), taken, room.begin());
    return room.subspan(taken);
}

void sinc_stream::rewind() noexcept {
    resampler_->rewind();
    is_primed_ = true;
    totals_.in_frames = 0;
    totals_.out_frames = 0;
    discarded_frames_ = 0;
    held_frames_ = 0;
}

} // namespace kelvane
