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
    silence_rules rules = rules_;
    if (segments_.are_all_silent()) {
        rules.note_silence(all);
    }
    emit_all_or_nothing([&] {
        for (std::size_t i = 0; i < all; ++i) {
            emit_segment(i, rules.judge_next(i + 1 == all));
        }
    });
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

/// Judged on a copy: where the host has no room for it, the segment stays as it is.
void silence_skipper::release_head() {
    silence_rules rules = rules_;
    const silence_verdict verdict = rules.judge_next(segments_.size() == 1);
    emit_all_or_nothing([&] { emit_segment(0, verdict); });
    rules_ = rules;
    segments_.pop();
}

void silence_skipper::emit_segment(std::size_t index, silence_verdict verdict) {
    switch (verdict) {
    case silence_verdict::fade_out:
        emit_faded(index, silence_fade(silence_fade::direction::out));
        break;
    case silence_verdict::fade_in:
        emit_faded(index, silence_fade(silence_fade::direction::in));
        break;
    case silence_verdict::pass:
        emit_unchanged(index);
        break;
    case silence_verdict::drop:
        break;
    }
}

void silence_skipper::emit_unchanged(std::size_t index) {
    segments_.for_pieces_of(
        index, [this](std::span<const double> samples, const stream_format& format) { emit_block(samples, format); });
}

void silence_skipper::emit_faded(std::size_t index, silence_fade fade) {
    segments_.for_pieces_of(index, [&](std::span<const double> samples, const stream_format& format) {
        emit_block(samples.size() / format.channels, format, [&](std::span<double> filled) {
            std::copy(samples.begin(), samples.end(), filled.begin());
            fade.process(filled, format.channels, format.sample_rate_hz);
        });
    });
}

} // namespace kelvane
