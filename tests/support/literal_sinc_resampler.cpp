#include "tests/support/literal_sinc_resampler.h"

#include <array>
#include <cmath>
#include <numbers>

namespace testing_support {

namespace {

constexpr double pi = std::numbers::pi;

struct level {
    double cutoff;
    std::uint32_t sidelobes;
    std::uint32_t phase_bits;
    std::uint32_t subphase_bits;
    bool is_kaiser;
    float beta;
};

constexpr std::array<level, 5> levels{{
    {0.98, 2, 12, 10, false, 0.0F},
    {0.98, 4, 12, 10, false, 0.0F},
    {0.825, 8, 8, 16, true, 5.5F},
    {0.9, 32, 10, 14, true, 10.5F},
    {0.962, 128, 10, 14, true, 14.5F},
}};

const level& level_at(std::uint32_t quality) {
    return quality >= 5 ? levels[2] : levels[quality];
}

double sinc(double x) {
    if (std::fabs(x) < 0.00001) {
        return 1.0;
    }
    return std::sin(x) / x;
}

double bessel_i0(double x) {
    double sum = 0.0;
    for (int k = 0; k <= 17; ++k) {
        double numerator = 1.0;
        double factorial = 1.0;
        for (int i = 1; i <= k; ++i) {
            numerator *= x * x / 4.0;
            factorial *= i;
        }
        sum += numerator / (factorial * factorial);
    }
    return sum;
}

} // namespace

literal_sinc_table::literal_sinc_table(std::uint32_t quality, double ratio)
    : quality_(quality), cutoff_(level_at(quality).cutoff), taps_(2 * level_at(quality).sidelobes),
      norm_(bessel_i0(static_cast<double>(level_at(quality).beta))) {
    if (ratio < 1.0) {
        cutoff_ *= ratio;
        taps_ = static_cast<std::uint32_t>(std::ceil(taps_ / ratio));
    }
    while (taps_ % 4 != 0) {
        ++taps_;
    }
    const std::uint32_t phases = 1U << level_at(quality).phase_bits;
    for (std::uint32_t phase = 0; phase <= phases; ++phase) {
        for (std::uint32_t tap = 0; tap < taps_; ++tap) {
            (phase < phases ? coefficients_ : one_past_the_end_).push_back(value(phase, tap));
        }
    }
}

float literal_sinc_table::value(std::uint32_t phase, std::uint32_t tap) const {
    const level& row = level_at(quality_);
    const double phases = 1U << row.phase_bits;
    const double n = tap * phases + phase;
    const double w = n / (taps_ * phases);
    const double x = 2.0 * w - 1.0;
    if (!row.is_kaiser) {
        return static_cast<float>(cutoff_ * sinc(taps_ * (pi / 2.0) * x * cutoff_) * sinc(pi * x));
    }
    const auto square = static_cast<float>(1.0 - x * x);
    const float s = std::sqrt(square);
    const float argument = row.beta * s;
    const double window = bessel_i0(static_cast<double>(argument));
    return static_cast<float>(cutoff_ * sinc(pi * (taps_ / 2.0) * x * cutoff_) * window / norm_);
}

float literal_sinc_table::delta(std::uint32_t phase, std::uint32_t tap) const {
    if (!level_at(quality_).is_kaiser) {
        return 0.0F;
    }
    const std::size_t next = (phase + std::size_t{1}) * taps_ + tap;
    const float behind = next < coefficients_.size() ? coefficients_[next] : one_past_the_end_[tap];
    return behind - coefficient(phase, tap);
}

literal_sinc_resampler::literal_sinc_resampler(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t channels,
                                               std::uint32_t quality)
    : literal_sinc_resampler(input_hz, output_hz, channels, quality,
                             std::make_shared<literal_sinc_table>(quality, static_cast<double>(output_hz) / input_hz)) {
}

literal_sinc_resampler::literal_sinc_resampler(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t channels,
                                               std::uint32_t quality, std::shared_ptr<const literal_sinc_table> table)
    : quality_(quality), channels_(channels), table_(std::move(table)),
      total_(std::uint64_t{1} << (level_at(quality).phase_bits + level_at(quality).subphase_bits)),
      skip_(level_at(quality).sidelobes), rings_(channels, std::vector<float>(2 * std::size_t{table_->taps()})) {
    const double ratio = static_cast<double>(output_hz) / input_hz;
    step_ = static_cast<std::uint64_t>(std::floor(static_cast<double>(total_) / ratio + 0.5));
}

std::vector<double> literal_sinc_resampler::process(const std::vector<double>& interleaved) {
    std::vector<double> out;
    std::size_t frames = interleaved.size() / channels_;
    const double* next = interleaved.data();
    while (frames > 0) {
        while (time_ >= total_ && frames > 0) {
            push(next);
            next += channels_;
            time_ -= total_;
            --frames;
        }
        while (time_ < total_) {
            if (skip_ > 0) {
                --skip_;
            } else {
                append_frame(out);
            }
            time_ += step_;
        }
    }
    return out;
}

void literal_sinc_resampler::push(const double* frame) {
    position_ = (position_ == 0 ? table_->taps() : position_) - 1;
    for (std::uint32_t channel = 0; channel < channels_; ++channel) {
        const auto rounded = static_cast<float>(frame[channel]);
        rings_[channel][position_] = rounded;
        rings_[channel][position_ + table_->taps()] = rounded;
    }
}

void literal_sinc_resampler::append_frame(std::vector<double>& out) const {
    for (std::uint32_t channel = 0; channel < channels_; ++channel) {
        out.push_back(static_cast<double>(sample(channel)));
    }
}

float literal_sinc_resampler::sample(std::uint32_t channel) const {
    const std::uint32_t subphase_bits = level_at(quality_).subphase_bits;
    const auto phase = static_cast<std::uint32_t>(time_ >> subphase_bits);
    const auto subphase = static_cast<std::uint32_t>(time_ & ((1U << subphase_bits) - 1));
    const float fraction = static_cast<float>(subphase) * (1.0F / static_cast<float>(1U << subphase_bits));
    const float* const window = rings_[channel].data() + position_;
    std::array<float, 4> sums{};
    for (std::uint32_t tap = 0; tap < table_->taps(); ++tap) {
        const float coefficient = table_->coefficient(phase, tap);
        const bool is_kaiser = level_at(quality_).is_kaiser;
        const float used = is_kaiser ? coefficient + fraction * table_->delta(phase, tap) : coefficient;
        sums[tap % 4] += window[tap] * used;
    }
    return (sums[0] + sums[2]) + (sums[1] + sums[3]);
}

/// The samples stay where they are.
void literal_sinc_resampler::rewind() {
    position_ = 0;
    time_ = 0;
    skip_ = level_at(quality_).sidelobes;
}

} // namespace testing_support
