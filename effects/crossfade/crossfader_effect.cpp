#include "effects/crossfade/crossfader_effect.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

bool crossfader_effect::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (!has_samples(*block)) {
        return true;
    }
    const stream_format format = format_of(*block);
    if (!fade_.is_idle() && format == format_ && held_.fill() != 0) {
        return fade_into(mutable_samples_of(*block));
    }
    fade_.end();
    follow_format(format);
    if (held_.capacity() == 0) {
        return true;
    }
    delay(samples_of(*block));
    return false;
}

void crossfader_effect::on_playback_end(velmora::abort_signal*) {
    if (fade_.is_running()) {
        held_.drop_oldest(held_.fill());
    }
    emit_held();
    fade_.end();
}

void crossfader_effect::flush() {
    format_ = {};
    held_ = {};
    storage_.grow(0);
    fade_.end();
}

double crossfader_effect::get_latency() {
    if (format_.channels == 0 || format_.sample_rate_hz == 0) {
        return 0.0;
    }
    return static_cast<double>(held_.fill() / format_.channels) / format_.sample_rate_hz;
}

/// Mixes the held audio into a block's samples. Returns whether the whole block is to go on; otherwise the fade has
/// ended in it, the mixed samples are emitted and those behind them held. A block that the host had no room for is then
/// mixed already, and comes in again without a fade.
bool crossfader_effect::fade_into(std::span<double> incoming) {
    const std::size_t mixed = fade_.mix(held_, incoming, format_.channels);
    if (mixed == incoming.size()) {
        return true;
    }
    fade_.end();
    emit_all_or_nothing([&] {
        emit_block(incoming.first(mixed), format_);
        delay(incoming.subspan(mixed));
    });
    return false;
}

/// Lets go of what is held in another format and makes room for a fade in this one. Throws a bad allocation and then
/// holds nothing.
void crossfader_effect::follow_format(const stream_format& format) {
    if (format == format_) {
        return;
    }
    emit_held();
    const auto fade_frames = static_cast<std::size_t>(std::llround(format.sample_rate_hz * fade_s_));
    held_ = sample_ring(storage_.grow_to_frames(fade_frames, format.channels));
    format_ = format;
}

/// Takes samples up and emits, from the other end, as many as there is no room for: first of what is held, then, when
/// the samples are more than the ring takes, of themselves. A bad allocation of the host leaves the ring as it was.
void crossfader_effect::delay(std::span<const double> samples) {
    emit_all_or_nothing([&] { emit_displaced_by(samples); });
    while (!samples.empty()) {
        const std::span<const double> piece = samples.first(std::min(samples.size(), held_.writable()));
        held_.write(piece);
        samples = samples.subspan(piece.size());
    }
}

/// Emits, for each piece that the ring will take, a block of what that piece displaces.
void crossfader_effect::emit_displaced_by(std::span<const double> samples) {
    sample_ring later = held_; // only its positions move
    std::size_t held_left = held_.fill();
    for (std::size_t left = samples.size(); left != 0;) {
        const std::size_t piece = std::min(left, later.writable());
        const std::span<const double> displaced = later.displaced_by(piece);
        const std::span<const double> old = displaced.first(std::min(held_left, displaced.size()));
        const std::span<const double> own = samples.first(displaced.size() - old.size());
        if (!displaced.empty()) {
            emit_joined(old, own);
        }
        held_left -= old.size();
        samples = samples.subspan(own.size());
        later.skip(piece);
        left -= piece;
    }
}

void crossfader_effect::emit_joined(std::span<const double> first, std::span<const double> second) {
    emit_block((first.size() + second.size()) / format_.channels, format_, [&](std::span<double> filled) {
        std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), filled.begin()));
    });
}

void crossfader_effect::emit_held() {
    emit_all_or_nothing([this] {
        for (sample_ring left = held_; left.fill() != 0; left.drop_oldest(left.oldest().size())) {
            emit_block(left.oldest(), format_);
        }
    });
    held_.drop_oldest(held_.fill());
}

} // namespace kelvane
