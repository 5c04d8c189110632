#include "effects/limiters/advanced_limiter.h"

#include "frame/exceptions.h"

#include <algorithm>
#include <new>

namespace kelvane {

bool advanced_limiter::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    const bool claims_samples = block->get_channels() != 0 && block->get_sample_count() != 0;
    if (claims_samples && !has_samples(*block)) {
        return true;
    }
    follow_format(format_of(*block));
    if (claims_samples) {
        limit(*block);
    }
    return is_block_with_audio(*block);
}

void advanced_limiter::follow_format(const stream_format& format) {
    if (is_running_ && format != format_) {
        drain();
        is_running_ = false;
    }
    if (!is_running_) {
        make_channels(format.channels);
        format_ = format;
        held_frames_ = 0;
        is_running_ = true;
    }
}

void advanced_limiter::make_channels(std::uint32_t channels) {
    const std::size_t count = (std::size_t{channels} + 1) / 2;
    if (count == pair_count_) {
        std::for_each_n(pairs_.get(), count, [](limiter_channel_pair& pair) { pair.reset(); });
        return;
    }
    pair_count_ = 0;
    pairs_.reset(new (std::nothrow) limiter_channel_pair[count]);
    if (!pairs_) {
        throw bad_allocation();
    }
    pair_count_ = count;
}

void advanced_limiter::limit(velmora::sample_block& block) {
    const std::span<double> samples = mutable_samples_of(block);
    limit_frames(pairs(), samples, format_.channels);
    const std::size_t frames = block.get_sample_count();
    const std::size_t swallowed = std::min(frames, limiter_look_ahead_frames - held_frames_);
    held_frames_ += swallowed;
    if (swallowed != 0) {
        const auto kept = samples.subspan(swallowed * format_.channels);
        std::copy(kept.begin(), kept.end(), samples.begin());
    }
    block.set_sample_count(frames - swallowed);
}

void advanced_limiter::on_playback_end(velmora::abort_signal*) {
    drain();
}

/// Silence pushes out what is held. What comes before it is the zeros with which a short stream was padded in front.
void advanced_limiter::drain() {
    if (held_frames_ == 0) {
        return;
    }
    const std::span<double> pushed = tail_.grow_to_frames(limiter_look_ahead_frames, format_.channels);
    std::fill(pushed.begin(), pushed.end(), 0.0);
    limit_frames(pairs(), pushed, format_.channels);
    const std::size_t samples = held_frames_ * format_.channels;
    held_frames_ = 0;
    emit_block(pushed.last(samples), format_);
}

void advanced_limiter::flush() {
    is_running_ = false;
    held_frames_ = 0;
}

double advanced_limiter::get_latency() {
    if (format_.sample_rate_hz == 0) {
        return 0.0;
    }
    return static_cast<double>(held_frames_) / static_cast<double>(format_.sample_rate_hz);
}

} // namespace kelvane
