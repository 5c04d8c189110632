#include "tests/module/slow_crossfader.h"

#include <cmath>

namespace testing_support {

void slow_crossfader::take(const stretch& block) {
    for (std::size_t i = 0; i < block.samples.size(); i += block.format.channels) {
        frame taken;
        for (std::size_t channel = 0; channel < block.format.channels; ++channel) {
            taken.push_back(block.samples[i + channel]);
        }
        take(taken, block.format);
    }
}

void slow_crossfader::take(const frame& taken, const block_format& format) {
    if (fade_ != fade_state::idle && format == format_ && !held_.empty()) {
        mix(taken);
    } else {
        fade_ = fade_state::idle;
        hold(taken, format);
    }
}

void slow_crossfader::mix(const frame& fresh) {
    if (fade_ == fade_state::armed) {
        fade_ = fade_state::running;
        fade_frame_ = 0;
        fade_frames_ = held_.size();
    }
    const double g = static_cast<double>(fade_frame_) / static_cast<double>(fade_frames_);
    frame mixed;
    for (std::size_t channel = 0; channel < fresh.size(); ++channel) {
        const double old_sample = held_.front()[channel];
        mixed.push_back((fresh[channel] - old_sample) * g + old_sample);
    }
    held_.pop_front();
    ++fade_frame_;
    ++mixed_frames;
    emit(mixed, format_);
}

void slow_crossfader::hold(const frame& taken, const block_format& format) {
    if (!(format == format_)) {
        adopt(format);
    }
    if (capacity_frames_ == 0) {
        emit(taken, format);
        return;
    }
    if (held_.size() == capacity_frames_) {
        emit_oldest();
    }
    held_.push_back(taken);
}

void slow_crossfader::adopt(const block_format& format) {
    while (!held_.empty()) {
        emit_oldest();
    }
    format_ = format;
    // Halves go up: all values are positive.
    capacity_frames_ = static_cast<std::size_t>(std::floor(format.sample_rate_hz * fade_s_ + 0.5));
}

void slow_crossfader::change_track() {
    if (fade_ == fade_state::idle) {
        fade_ = fade_state::armed;
    }
}

void slow_crossfader::end_playback() {
    if (fade_ == fade_state::running) {
        dropped_frames += held_.size();
        held_.clear();
    }
    while (!held_.empty()) {
        emit_oldest();
    }
    fade_ = fade_state::idle;
}

void slow_crossfader::flush() {
    forgotten_frames += held_.size();
    held_.clear();
    format_ = {};
    fade_ = fade_state::idle;
}

double slow_crossfader::latency_s() const {
    return held_.empty() ? 0.0 : static_cast<double>(held_.size()) / format_.sample_rate_hz;
}

void slow_crossfader::emit_oldest() {
    emit(held_.front(), format_);
    held_.pop_front();
}

void slow_crossfader::emit(const frame& emitted, const block_format& format) {
    if (out_.empty() || !(out_.back().format == format)) {
        out_.push_back({format, {}});
    }
    out_.back().samples.insert(out_.back().samples.end(), emitted.begin(), emitted.end());
}

} // namespace testing_support
