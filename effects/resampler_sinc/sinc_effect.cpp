#include "effects/resampler_sinc/sinc_effect.h"

#include "effects/resampler_sinc/sinc_resampler_core.h"
#include "frame/console.h"

namespace kelvane {

namespace {

constexpr std::uint32_t answered_quality = 2; ///< "Normal": the host asks about rates without a quality

} // namespace

bool sinc_resampler_effect::is_conversion_supported(std::uint32_t source_hz, std::uint32_t target_hz) noexcept {
    return sinc_resampler::is_feasible(source_hz, target_hz, answered_quality);
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
    stream_->push(samples_of(*block), emission());
    return false;
}

void sinc_resampler_effect::follow_format(const stream_format& format) {
    if (format == format_) {
        return;
    }
    end_stream();
    format_ = {}; // should the new one fail, the next block tries again
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
    if (stream_) {
        end_stream();
        format_ = {};
    }
}

void sinc_resampler_effect::end_stream() {
    if (stream_) {
        stream_->finish(emission());
        stream_.reset();
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

/// Puts converted frames into the list, in the speakers of the stream.
sinc_stream::sink sinc_resampler_effect::emission() {
    return [this](std::span<const double> frames) {
        emit_block(frames, {target_hz_, format_.channels, format_.channel_mask});
    };
}

} // namespace kelvane
