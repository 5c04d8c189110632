#include "effects/crossfade/crossfader_effect.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

bool crossfader_effect::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (!has_samples(*block)) {
        return true;
    }
    const stream_format format = format_of(*block);
    std::span<const double> unmixed = samples_of(*block);
    if (!fade_.is_idle() && format == format_) {
        unmixed = fade_into(mutable_samples_of(*block));
        if (unmixed.empty()) {
            return true;
        }
    }
    fade_.end();
    follow_format(format);
    if (held_.capacity() == 0) {
        return true;
    }
    delay(unmixed);
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

/// Mixes the held audio into a block's samples and returns those behind the end of the fade. When there are any, the
/// mixed ones have been emitted; otherwise the whole block is to go on.
std::span<const double> crossfader_effect::fade_into(std::span<double> incoming) {
    const std::size_t mixed = fade_.mix(held_, incoming, format_.channels);
    if (mixed != 0 && mixed != incoming.size()) {
        emit_block(incoming.first(mixed), format_);
    }
    return incoming.subspan(mixed);
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

/// Takes samples up and emits, from the other end, as many as there is no room for.
void crossfader_effect::delay(std::span<const double> samples) {
    while (!samples.empty()) {
        const std::span<const double> piece = samples.first(std::min(samples.size(), held_.writable()));
        const std::span<const double> displaced = held_.displaced_by(piece.size());
        if (!displaced.empty()) {
            emit_block(displaced, format_);
        }
        held_.write(piece);
        samples = samples.subspan(piece.size());
    }
}

void crossfader_effect::emit_held() {
    while (held_.fill() != 0) {
        const std::span<const double> oldest = held_.oldest();
        emit_block(oldest, format_);
        held_.drop_oldest(oldest.size());
    }
}

} // namespace kelvane
