#include "effects/resampler_ssrc/ssrc_effect.h"

#include "effects/resampler_common/target_rates.h"
#include "frame/exceptions.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace kelvane {

namespace {

constexpr std::uint32_t most_channels = 256;
constexpr std::size_t most_samples = std::numeric_limits<std::uint32_t>::max() / sizeof(double);

/// The size of a frame has 16 bits in the description that the converter takes.
constexpr std::uint32_t most_described_channels = std::numeric_limits<std::uint16_t>::max() / sizeof(double);

/// Whether the end of such a stream is waited for. The input rates are those that a target rate may have.
bool is_usual(const stream_format& format) noexcept {
    return format.channels >= 1 && format.channels <= most_channels && is_target_rate(format.sample_rate_hz);
}

} // namespace

bool ssrc_resampler::is_conversion_supported(std::uint32_t source_hz, std::uint32_t target_hz) noexcept {
    return ssrc::ssrc_converter::is_conversion_supported(source_hz, target_hz);
}

ssrc_resampler::ssrc_resampler(const ssrc_settings& chosen) : target_hz_(chosen.target_rate_hz) {
    if (chosen.excludes) {
        exclusions_ = parse_rate_exclusions(chosen.exclusions);
    }
}

bool ssrc_resampler::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (block->get_sample_count() == 0) {
        return false;
    }
    if (!has_samples(*block)) {
        return true;
    }
    follow_format(format_of(*block));
    if (passes_) {
        return true;
    }
    const std::span<const double> samples = samples_of(*block);
    if (samples.size() > most_samples) {
        throw mox::exception_overflow();
    }
    convert(samples, false);
    return false;
}

/// When the new stream cannot begin there is none, and the next block tries again.
void ssrc_resampler::follow_format(const stream_format& format) {
    if (format == format_) {
        return;
    }
    end_stream();
    if (!is_target_rate(target_hz_)) {
        throw mox::exception_invalid_params();
    }
    passes_ = is_left_alone(format.sample_rate_hz) || !set_up_for(format);
    format_ = format;
    frames_in_ = 0;
    frames_out_ = 0;
}

bool ssrc_resampler::is_left_alone(std::uint32_t rate_hz) const {
    return rate_hz == target_hz_ || is_excluded(exclusions_, rate_hz);
}

bool ssrc_resampler::set_up_for(const stream_format& format) {
    return format.channels <= most_described_channels &&
           converter_.set_up(ssrc::float64_format(format.sample_rate_hz, static_cast<std::uint16_t>(format.channels)),
                             target_hz_, ssrc::effect_quality);
}

void ssrc_resampler::on_playback_end(velmora::abort_signal*) {
    end_stream();
}

void ssrc_resampler::end_stream() {
    if (holds_frames_back()) {
        convert({}, true);
    }
    flush();
}

void ssrc_resampler::flush() {
    converter_.destroy();
    format_ = {};
    passes_ = false;
}

/// A stream of a format out of the usual range is converted too, but nothing of it is waited for.
bool ssrc_resampler::holds_frames_back() const noexcept {
    return is_usual(format_) && !passes_;
}

double ssrc_resampler::get_latency() {
    if (!holds_frames_back()) {
        return 0.0;
    }
    const double in_s = static_cast<double>(frames_in_) / format_.sample_rate_hz;
    const double out_s = static_cast<double>(frames_out_) / target_hz_;
    return std::max(in_s - out_s, 0.0);
}

void ssrc_resampler::convert(std::span<const double> samples, bool is_last) {
    try {
        if (!converter_.process(std::as_bytes(samples), is_last)) {
            throw std::runtime_error("Resampling failure");
        }
        frames_in_ += samples.size() / format_.channels;
        emit_output();
    } catch (...) {
        flush(); // its output is lost, and with it the stream's place in time
        throw;
    }
}

void ssrc_resampler::emit_output() {
    const std::span<const std::byte> output = converter_.output();
    const std::size_t frames = output.size() / sizeof(double) / format_.channels;
    if (frames == 0) {
        return;
    }
    emit_block(frames, {converter_.output_hz(), format_.channels, format_.channel_mask},
               [output](std::span<double> filled) { std::memcpy(filled.data(), output.data(), output.size()); });
    frames_out_ += frames;
}

} // namespace kelvane
