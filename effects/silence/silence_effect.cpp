#include "effects/silence/silence_effect.h"

#include "frame/exceptions.h"
#include "quillet/quillet.h"
#include "velmora/abort_signal.h"

#include <algorithm>

namespace kelvane {

namespace {

void throw_if_aborting(velmora::abort_signal& abort) {
    if (abort.is_aborting()) {
        throw velmora_io::exception_aborted();
    }
}

} // namespace

bool silence_skipper::on_block(velmora::sample_block* block, velmora::abort_signal* abort) {
    if (is_valid_block(*block)) {
        cut_up(*block);
        release_loud(*abort);
        release_beyond_lookahead(*abort);
    }
    return false;
}

void silence_skipper::on_playback_end(velmora::abort_signal*) {
    const std::size_t all = segments_.size();
    if (segments_.silent_at_head(all) == all) {
        rules_.note_silence(all);
    }
    release_all();
    flush();
}

void silence_skipper::flush() {
    segments_.clear();
    rules_.reset();
}

void silence_skipper::cut_up(velmora::sample_block& block) {
    const stream_format format = format_of(block);
    std::span<const double> rest = samples_of(block);
    rest = rest.subspan(fill_last_segment(rest, format));
    while (!rest.empty()) {
        segments_.start();
        rest = rest.subspan(fill_last_segment(rest, format));
    }
}

/// Returns how many of the samples the segment took.
std::size_t silence_skipper::fill_last_segment(std::span<const double> samples, const stream_format& format) {
    const std::size_t room = segments_.room_frames(format.sample_rate_hz) * format.channels;
    const auto taken = samples.first(std::min(room, samples.size()));
    if (!taken.empty()) {
        segments_.append(taken, format, audio_math::calculate_peak(taken.data(), taken.size()));
    }
    return taken.size();
}

void silence_skipper::release_loud(velmora::abort_signal& abort) {
    while (segments_.size() > 1) {
        throw_if_aborting(abort);
        if (segments_.silent_at_head(1) == 1) {
            return;
        }
        release_head();
    }
}

void silence_skipper::release_beyond_lookahead(velmora::abort_signal& abort) {
    const std::size_t lookahead = rules_.lookahead_segments();
    while (segments_.size() > lookahead) {
        throw_if_aborting(abort);
        if (segments_.silent_at_head(lookahead) == lookahead) {
            rules_.note_silence(lookahead);
        }
        release_head();
    }
}

void silence_skipper::release_all() {
    while (segments_.size() > 0) {
        release_head();
    }
}

void silence_skipper::release_head() {
    switch (rules_.release(segments_.size() == 1)) {
    case silence_verdict::fade_out:
        fade_head(silence_fade(silence_fade::direction::out));
        emit_head();
        break;
    case silence_verdict::fade_in:
        fade_head(silence_fade(silence_fade::direction::in));
        emit_head();
        break;
    case silence_verdict::pass:
        emit_head();
        break;
    case silence_verdict::drop:
        break;
    }
    segments_.pop();
}

void silence_skipper::fade_head(silence_fade fade) {
    segments_.for_pieces_of_head([&](std::span<double> samples, const stream_format& format) {
        fade.process(samples, format.channels, format.sample_rate_hz);
    });
}

void silence_skipper::emit_head() {
    segments_.for_pieces_of_head(
        [this](std::span<const double> samples, const stream_format& format) { emit_block(samples, format); });
}

} // namespace kelvane
