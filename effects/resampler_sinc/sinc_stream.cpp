#include "effects/resampler_sinc/sinc_stream.h"

#include "effects/resampler_sinc/stream_edges_core.h"
#include "frame/exceptions.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr std::size_t most_held_frames = most_edge_frames;
constexpr std::size_t first_plan_frames = 4096;
constexpr std::size_t plan_granule_frames = 1024;
constexpr double count_limit = 9223372036854775808.0; ///< 2^63

/// The integer part of what must be a count of things in memory.
std::uint64_t to_count(double value) {
    if (!(value < count_limit)) {
        throw bad_allocation();
    }
    return static_cast<std::uint64_t>(value);
}

} // namespace

sinc_stream::sinc_stream(std::uint32_t input_hz, std::uint32_t target_hz, std::uint32_t channels, std::uint32_t quality)
    : input_hz_(input_hz), target_hz_(target_hz), channels_(channels),
      resampler_(sinc_resampler::create(input_hz, target_hz, channels, quality)) {
    if (!resampler_) {
        throw bad_allocation();
    }
    make_room(first_plan_frames);
    held_.grow_to_frames(most_held_frames, channels_);
    edge_.grow_to_frames(most_edge_frames, channels_);
}

void sinc_stream::push(std::span<const double> frames, const sink& out) {
    total_in_frames_ += frames_in(frames);
    if (!is_primed_) {
        frames = hold(frames);
        if (held_frames_ < most_held_frames) {
            return;
        }
        prime(out);
    }
    const std::size_t all_frames = held_frames_ + frames_in(frames);
    const std::size_t surplus_frames = all_frames - std::min(all_frames, most_held_frames);
    const std::size_t surplus_held_frames = std::min(surplus_frames, held_frames_);
    convert(held().first(surplus_held_frames * channels_), out);
    release(surplus_held_frames);
    const std::size_t surplus_new_frames = surplus_frames - surplus_held_frames;
    convert(frames.first(surplus_new_frames * channels_), out);
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

void sinc_stream::prime(const sink& out) {
    const std::span<double> pre_roll(edge_.data(), held_frames_ * channels_);
    fill_before(held(), channels_, pre_roll);
    discarded_frames_ = start_delay_frames();
    convert(pre_roll, out);
    is_primed_ = true;
}

/// What comes out before the stream's first frame: the pre-roll, and going up the converter's delay.
std::uint64_t sinc_stream::start_delay_frames() const {
    const double ratio = resampler_->ratio();
    std::uint64_t frames = to_count(static_cast<double>(held_frames_) * ratio + 0.5);
    if (ratio > 1.0) {
        const double half_window = resampler_->taps() / 2.0;
        frames += to_count(std::floor(half_window * (ratio - 1.0) + ratio));
    }
    return frames;
}

void sinc_stream::finish(const sink& out) {
    if (!is_primed_) {
        prime(out);
    }
    const std::uint64_t due = due_frames();
    if (due == 0) {
        return;
    }
    const std::uint64_t last_frame = total_out_frames_ + due;
    const std::span<double> tail(edge_.data(), most_edge_frames * channels_);
    std::fill(tail.begin(), tail.end(), 0.0);
    const auto run_out_frames = static_cast<std::size_t>(std::min<std::uint64_t>(held_frames_, due));
    fill_after(held(), channels_, tail.first(run_out_frames * channels_));
    convert(held(), out, last_frame);
    push_out(tail, last_frame, out);
}

/// The output that belongs to the input and has not come yet. Where the exact length ends in a half, it falls as the
/// doubles fall.
std::uint64_t sinc_stream::due_frames() const noexcept {
    const double length = static_cast<double>(total_in_frames_) / input_hz_ * target_hz_;
    const double due = length - static_cast<double>(total_out_frames_) + 0.5;
    return due >= 1.0 && due < count_limit ? static_cast<std::uint64_t>(due) : 0;
}

/// Converts the tail, and silence behind it, until the last frame is out.
void sinc_stream::push_out(std::span<double> tail, std::uint64_t last_frame, const sink& out) {
    std::span<const double> left = tail;
    while (total_out_frames_ < last_frame) {
        const std::size_t wanted_frames = input_frames_for(last_frame - total_out_frames_ + discarded_frames_);
        const auto pushed = left.first(std::min(wanted_frames * channels_, left.size()));
        convert(pushed, out, last_frame);
        left = left.subspan(pushed.size());
        if (left.empty()) {
            std::fill(tail.begin(), tail.end(), 0.0);
            left = tail;
        }
    }
}

/// At most what an edge holds.
std::size_t sinc_stream::input_frames_for(std::uint64_t output_frames) const noexcept {
    const double frames = std::ceil(static_cast<double>(output_frames) / resampler_->ratio()) + 1.0;
    return static_cast<std::size_t>(std::min(frames, static_cast<double>(most_edge_frames)));
}

void sinc_stream::make_room(std::size_t input_frames) {
    const double output_samples =
        2.0 * resampler_->ratio() * static_cast<double>(input_frames) * static_cast<double>(channels_);
    converted_.grow(to_count(output_samples + 0.5));
    planned_frames_ = input_frames;
}

/// Output from the frame `last_frame` of the stream on is thrown away.
void sinc_stream::convert(std::span<const double> frames, const sink& out, std::uint64_t last_frame) {
    const std::size_t count = frames_in(frames);
    if (count > planned_frames_) {
        make_room(count + count % plan_granule_frames);
    }
    const std::size_t made = resampler_->process(frames, {converted_.data(), converted_.capacity()});
    const auto discarded = static_cast<std::size_t>(std::min<std::uint64_t>(made, discarded_frames_));
    discarded_frames_ -= discarded;
    const auto taken =
        static_cast<std::size_t>(std::min<std::uint64_t>(made - discarded, last_frame - total_out_frames_));
    if (taken != 0) {
        out({converted_.data() + discarded * channels_, taken * channels_});
        total_out_frames_ += taken;
    }
}

void sinc_stream::rewind() noexcept {
    resampler_->rewind();
    is_primed_ = true;
    total_in_frames_ = 0;
    total_out_frames_ = 0;
    discarded_frames_ = 0;
    held_frames_ = 0;
}

double sinc_stream::latency_s() const noexcept {
    return static_cast<double>(total_in_frames_) / input_hz_ - static_cast<double>(total_out_frames_) / target_hz_;
}

} // namespace kelvane
