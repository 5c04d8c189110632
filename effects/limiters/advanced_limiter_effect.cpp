#include "effects/limiters/advanced_limiter_effect.h"

#include "frame/exceptions.h"

#include <algorithm>
#include <new>
#include <utility>

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
    if (count > pair_count_) {
        std::unique_ptr<limiter_channel_pair[]> more(new (std::nothrow) limiter_channel_pair[count]);
        if (!more) {
            throw bad_allocation();
        }
        pairs_ = std::move(more);
        pair_count_ = count;
    }
    std::for_each_n(pairs_.get(), count, [](limiter_channel_pair& pair) { pair.reset(); });
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

/// Silence pushes out what is held; a stream that is shorter than the delay first has to be pushed to its end.
void advanced_limiter::drain() {
    const std::size_t held_frames = held_frames_;
    if (held_frames == 0) {
        return;
    }
    emit_block(held_frames, format_, [=, this](std::span<double> tail) {
        for (std::size_t missing = limiter_look_ahead_frames - held_frames; missing > 0;) {
            const std::size_t frames = std::min(missing, held_frames);
            push_silence(tail.first(frames * format_.channels));
            missing -= frames;
        }
        push_silence(tail);
    });
    held_frames_ = 0;
}

/// Writes what silence of the same length pushes out.
void advanced_limiter::push_silence(std::span<double> pushed_out) {
    std::fill(pushed_out.begin(), pushed_out.end(), 0.0);
    limit_frames(pairs(), pushed_out, format_.channels);
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
