#include "effects/resampler_sinc/sinc_effect.h"

#include "effects/resampler_sinc/sinc_quality_core.h"
#include "effects/resampler_sinc/sinc_resampler_core.h"
#include "frame/console.h"

#include <cstddef>
#include <span>

namespace kelvane {

/// The host asks about rates without a quality.
bool sinc_resampler_effect::is_conversion_supported(std::uint32_t source_hz, std::uint32_t target_hz) noexcept {
    return sinc_resampler::is_feasible(source_hz, target_hz, normal_sinc_quality);
}

sinc_resampler_effect::sinc_resampler_effect(const sinc_settings& chosen)
    : target_hz_(chosen.target_rate_hz), quality_(chosen.quality) {
    if (chosen.excludes) {
        exclusions_ = parse_rate_exclusions(chosen.exclusions);
    }
}

bool sinc_resampler_effect::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (!is_block_with_audio(*block) || !has_samples(*block)) {
        return false;
    }
    follow_format(format_of(*block));
    if (!stream_) {
        return true;
    }
    const std::span<const double> samples = samples_of(*block);
    emit_or_drop_stream([&] { stream_->push(samples, emission()); });
    return false;
}

void sinc_resampler_effect::follow_format(const stream_format& format) {
    if (format == format_) {
        return;
    }
    end_stream(); // should the new one fail, the next block tries again
    open_stream(format);
    format_ = format;
}

void sinc_resampler_effect::open_stream(const stream_format& format) {
    const std::uint32_t rate_hz = format.sample_rate_hz;
    if (is_excluded(exclusions_, rate_hz)) {
        print_notice("Resampler (RetroArch): %u Hz sample rate is excluded", rate_hz);
    } else if (rate_hz != target_hz_) {
        stream_.emplace(rate_hz, target_hz_, format.channels, quality_);
    }
}

void sinc_resampler_effect::on_playback_end(velmora::abort_signal*) {
    end_stream();
}

/// Then no format is known any more, a passing one neither.
void sinc_resampler_effect::end_stream() {
    if (stream_) {
        emit_or_drop_stream([this] { emit_rest(); });
    }
    drop_stream();
}

/// What is still due, as one block.
void sinc_resampler_effect::emit_rest() {
    const std::size_t due = stream_->due_frames();
    if (due != 0) {
        emit_block(due, output_format(), [this](std::span<double> filled) { stream_->finish(filled); });
    }
}

void sinc_resampler_effect::drop_stream() noexcept {
    stream_.reset();
    format_ = {};
}

/// Calls `emit`, which emits what it gets from the stream. After an exception the list has nothing of it, and the
/// frames are missing in the stream: it ends there, and the next block begins another.
template <class Emit>
void sinc_resampler_effect::emit_or_drop_stream(Emit emit) {
    try {
        emit_all_or_nothing(emit);
    } catch (...) {
        drop_stream();
        throw;
    }
}

void sinc_resampler_effect::flush() {
    if (stream_) {
        stream_->rewind();
    }
}

double sinc_resampler_effect::get_latency() {
    return stream_ ? stream_->latency_s() : 0.0;
}

/// Puts converted frames into the list.
sinc_stream::sink sinc_resampler_effect::emission() {
    return [this](std::span<const double> frames) { emit_block(frames, output_format()); };
}

/// In the speakers of the stream.
stream_format sinc_resampler_effect::output_format() const noexcept {
    return {target_hz_, format_.channels, format_.channel_mask};
}

} // namespace kelvane
