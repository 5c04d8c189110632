#include "tests/module/literal_resampler.h"

#include "tests/support/literal_lpc.h"

#include <algorithm>
#include <cmath>

namespace testing_support {

void literal_resampler::play(const stretch& audio) {
    if (audio.frames() == 0) {
        return;
    }
    if (!(audio.format == format_)) {
        change_format(audio.format);
    }
    if (!converter_) {
        emit(format_, audio.samples);
        return;
    }
    for (auto first = audio.samples.begin(); first != audio.samples.end(); first += format_.channels) {
        take(frame(first, first + format_.channels));
    }
}

void literal_resampler::change_format(const block_format& format) {
    if (converter_) {
        drain();
    }
    converter_.reset();
    format_ = format;
    held_.clear();
    is_primed_ = false;
    taken_ = emitted_ = unwanted_ = 0;
    const bool passes = excluded_hz_.contains(format.sample_rate_hz) || format.sample_rate_hz == target_hz_;
    if (!passes) {
        converter_ = kelvane::sinc_resampler::create(format.sample_rate_hz, target_hz_, format.channels, quality_);
    }
}

void literal_resampler::take(const frame& one) {
    ++taken_;
    held_.push_back(one);
    if (!is_primed_ && held_.size() == 1024) {
        prime();
    }
    if (is_primed_ && held_.size() > 1024) {
        convert({held_.front()});
        held_.pop_front();
    }
}

void literal_resampler::prime() {
    std::vector<frame> lead_in = continuation({held_.rbegin(), held_.rend()}, held_.size());
    std::reverse(lead_in.begin(), lead_in.end());
    const double ratio = static_cast<double>(target_hz_) / format_.sample_rate_hz;
    unwanted_ = static_cast<std::uint64_t>(static_cast<double>(held_.size()) * ratio + 0.5);
    if (target_hz_ > format_.sample_rate_hz) {
        unwanted_ += static_cast<std::uint64_t>(std::floor(converter_->taps() / 2.0 * (ratio - 1.0) + ratio));
    }
    convert(lead_in);
    is_primed_ = true;
}

/// The held frames, what may have followed them, then silence: as many frames in as there are frames due, and more
/// silence if that is not enough.
void literal_resampler::drain() {
    if (!is_primed_) {
        prime();
    }
    const double due =
        static_cast<double>(taken_) / format_.sample_rate_hz * target_hz_ - static_cast<double>(emitted_) + 0.5;
    allowed_ = due < 1.0 ? 0 : static_cast<std::uint64_t>(due);
    std::vector<frame> rest(held_.begin(), held_.end());
    const std::size_t predicted = std::min<std::size_t>(rest.size(), allowed_);
    const auto behind = continuation(rest, predicted);
    rest.insert(rest.end(), behind.begin(), behind.end());
    rest.resize(held_.size() + static_cast<std::size_t>(allowed_), frame(format_.channels));
    convert(rest);
    while (allowed_ > 0) {
        convert({frame(format_.channels)});
    }
    allowed_ = UINT64_MAX;
}

void literal_resampler::convert(const std::vector<frame>& frames) {
    std::vector<double> in;
    for (const frame& one : frames) {
        in.insert(in.end(), one.begin(), one.end());
    }
    std::vector<double> made(converter_->output_room(frames.size()) * format_.channels);
    made.resize(converter_->process(in, made) * format_.channels);
    for (auto first = made.begin(); first != made.end(); first += format_.channels) {
        if (unwanted_ > 0) {
            --unwanted_;
        } else if (allowed_ > 0) {
            --allowed_;
            ++emitted_;
            emit({target_hz_, format_.channels, format_.channel_mask}, {first, first + format_.channels});
        }
    }
}

std::vector<literal_resampler::frame> literal_resampler::continuation(const std::vector<frame>& frames,
                                                                      std::size_t count) const {
    std::vector<frame> made(count, frame(format_.channels));
    for (std::size_t channel = 0; channel < format_.channels; ++channel) {
        std::vector<double> history;
        for (const frame& one : frames) {
            history.push_back(one[channel]);
        }
        const auto samples = literal_continuation(history, count);
        for (std::size_t i = 0; i < count; ++i) {
            made[i][channel] = samples[i];
        }
    }
    return made;
}

void literal_resampler::emit(const block_format& format, const std::vector<double>& samples) {
    join(out, {{format, samples}});
}

void literal_resampler::flush() {
    if (converter_) {
        converter_->rewind();
        held_.clear();
        is_primed_ = true;
        taken_ = emitted_ = unwanted_ = 0;
    }
}

void literal_resampler::end() {
    change_format({});
    converter_.reset();
}

double literal_resampler::latency_s() const {
    if (!converter_) {
        return 0.0;
    }
    return static_cast<double>(taken_) / format_.sample_rate_hz - static_cast<double>(emitted_) / target_hz_;
}

} // namespace testing_support
