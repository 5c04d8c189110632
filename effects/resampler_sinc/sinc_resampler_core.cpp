#include "effects/resampler_sinc/sinc_resampler_core.h"

#include "effects/resampler_sinc/sinc_quality_core.h"

#include <array>
#include <cmath>
#include <new>
#include <numbers>

namespace kelvane {

namespace {

constexpr double pi = std::numbers::pi;

double sinc(double x) noexcept {
    return std::fabs(x) < 0.00001 ? 1.0 : std::sin(x) / x;
}

double bessel_i0(double x) noexcept {
    const double quarter_square = x * x / 4.0;
    double sum = 0.0;
    double power = 1.0;
    double factorial = 1.0;
    for (int k = 0; k < 18; ++k) {
        sum += power / (factorial * factorial);
        power *= quarter_square;
        factorial *= k + 1;
    }
    return sum;
}

double needed_taps(const sinc_quality& quality, double ratio) noexcept {
    const double taps = 2.0 * quality.sidelobes;
    return ratio < 1.0 ? std::ceil(taps / ratio) : taps;
}

double steps_of(const sinc_quality& quality) noexcept {
    return std::ldexp(1.0, static_cast<int>(quality.phase_bits + quality.subphase_bits));
}

float coefficient(const sinc_quality& quality, double norm, double cutoff, double taps, double place) noexcept {
    const double x = 2.0 * place - 1.0;
    if (quality.window == sinc_window::lanczos) {
        return static_cast<float>(cutoff * sinc(taps * (pi / 2.0) * x * cutoff) * sinc(pi * x));
    }
    const float root = std::sqrt(static_cast<float>(1.0 - x * x));
    const double window = bessel_i0(static_cast<double>(quality.kaiser_beta * root));
    return static_cast<float>(cutoff * sinc(pi * (taps / 2.0) * x * cutoff) * window / norm);
}

} // namespace

bool sinc_resampler::is_feasible(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t quality) noexcept {
    if (input_hz == 0 || output_hz == 0) {
        return false;
    }
    const double ratio = static_cast<double>(output_hz) / input_hz;
    const sinc_quality& row = sinc_quality_at(quality);
    return needed_taps(row, ratio) < 4294967291.0 && steps_of(row) / ratio < 4294967295.0;
}

std::unique_ptr<sinc_resampler> sinc_resampler::create(std::uint32_t input_hz, std::uint32_t output_hz,
                                                       std::uint32_t channels, std::uint32_t quality) noexcept {
    if (!is_feasible(input_hz, output_hz, quality)) {
        return nullptr;
    }
    try {
        return std::unique_ptr<sinc_resampler>(
            new sinc_resampler(sinc_quality_at(quality), static_cast<double>(output_hz) / input_hz, channels));
    } catch (const std::exception&) {
        return nullptr;
    }
}

sinc_resampler::sinc_resampler(const sinc_quality& quality, double ratio, std::uint32_t channels)
    : quality_(quality), ratio_(ratio), channels_(channels),
      taps_((static_cast<std::uint32_t>(needed_taps(quality, ratio)) + 3U) / 4U * 4U), skip_(quality.sidelobes) {
    const std::size_t phases = std::size_t{1} << quality.phase_bits;
    const double cutoff = ratio < 1.0 ? quality.cutoff * ratio : quality.cutoff;
    const double norm = bessel_i0(static_cast<double>(quality.kaiser_beta));
    table_.resize((phases + 1) * taps_); // one row more, for the last deltas
    for (std::size_t phase = 0; phase <= phases; ++phase) {
        for (std::size_t tap = 0; tap < taps_; ++tap) {
            const double place = static_cast<double>(tap * phases + phase) / static_cast<double>(taps_ * phases);
            table_[phase * taps_ + tap] = coefficient(quality, norm, cutoff, taps_, place);
        }
    }
    history_.resize(std::size_t{2} * taps_ * channels);
}

void sinc_resampler::push(const double* frame) noexcept {
    position_ = (position_ == 0 ? taps_ : position_) - 1;
    for (std::size_t channel = 0; channel < channels_; ++channel) {
        float* const history = &history_[channel * 2 * taps_];
        history[position_] = history[position_ + taps_] = static_cast<float>(frame[channel]);
    }
}

void sinc_resampler::compute(double* frame) const noexcept {
    const auto time = static_cast<std::uint32_t>(time_);
    const std::size_t phase = time >> quality_.subphase_bits;
    const std::uint32_t mask = (1U << quality_.subphase_bits) - 1;
    const bool is_plain = quality_.window == sinc_window::lanczos;
    const float fraction = is_plain ? 0.0F : static_cast<float>(time & mask) / static_cast<float>(mask + 1);
    for (std::size_t channel = 0; channel < channels_; ++channel) {
        const float* const history = &history_[channel * 2 * taps_ + position_];
        const float* const row = &table_[phase * taps_];
        std::array<float, 4> sums{};
        for (std::size_t tap = 0; tap < taps_; ++tap) {
            const float delta = row[taps_ + tap] - row[tap];
            sums[tap % 4] += history[tap] * (row[tap] + fraction * delta);
        }
        frame[channel] = static_cast<double>((sums[0] + sums[2]) + (sums[1] + sums[3]));
    }
}

std::size_t sinc_resampler::process(std::span<const double> in, std::span<double> out) noexcept {
    const std::uint64_t total = std::uint64_t{1} << (quality_.phase_bits + quality_.subphase_bits);
    const auto step = static_cast<std::uint64_t>(static_cast<double>(total) / ratio_ + 0.5);
    const std::size_t frames = in.size() / channels_;
    std::size_t taken = 0;
    std::size_t made = 0;
    while (taken < frames) {
        while (time_ >= total && taken < frames) {
            push(&in[taken++ * channels_]);
            time_ -= total;
        }
        for (; time_ < total; time_ += step) {
            if (skip_ > 0) {
                --skip_;
            } else {
                compute(&out[made++ * channels_]);
            }
        }
    }
    return made;
}

void sinc_resampler::rewind() noexcept {
    position_ = 0;
    time_ = 0;
    skip_ = quality_.sidelobes;
}

} // namespace kelvane
