#include "effects/resampler_ssrc/real_fft.h"

#include <algorithm>
#include <array>
#include <complex>

namespace kelvane::ssrc {

namespace {

using complex = std::complex<double>;

constexpr std::size_t most_small_samples = 4 * small_right_angle_fft::most_points;

/// The odd bin that a root of z^(samples/4) = i stands for, and whether it is the bin's mirror image.
struct odd_bin {
    std::size_t number;
    bool is_mirrored;
};

odd_bin odd_bin_of(std::size_t root_number, std::size_t samples) noexcept {
    const std::size_t bin = 4 * root_number + 1;
    return bin < samples / 2 ? odd_bin{bin, false} : odd_bin{samples - bin, true};
}

/// Sums to the front, differences behind them.
void fold(const double* from, double* to, std::size_t samples) noexcept {
    const std::size_t half = samples / 2;
    for (std::size_t i = 0; i < half; ++i) {
        const double low = from[i];
        const double high = from[i + half];
        to[i] = low + high;
        to[i + half] = low - high;
    }
}

} // namespace

real_fft::octave::octave(std::size_t whole_size, std::size_t octave_samples, const vector_kernels& kernels)
    : samples(octave_samples), transform(octave_samples / 4, kernels), targets(octave_samples / 4) {
    for (std::size_t place = 0; place < targets.size(); ++place) {
        const odd_bin bin = odd_bin_of(transform.root_number(place), samples);
        const auto target = static_cast<std::int32_t>(2 * bin.number * (whole_size / samples));
        targets[place] = bin.is_mirrored ? ~target : target;
    }
}

real_fft::real_fft(std::size_t size, const vector_kernels& kernels)
    : size_(size), small_size_(std::min(size, most_small_samples)), folded_(size), spectrum_(size / 2) {
    for (std::size_t samples = size; samples > most_small_samples; samples /= 2) {
        octaves_.emplace_back(size, samples, kernels);
    }
}

void real_fft::forward(std::span<double> samples) noexcept {
    std::copy(samples.begin(), samples.end(), folded_.begin());
    for (const octave& part : octaves_) {
        fold(folded_.data(), folded_.data(), part.samples);
        const double* differences = folded_.data() + part.samples / 2;
        part.transform.forward(differences, differences + part.samples / 4, spectrum_.data());
        scatter(part, samples);
    }
    forward_small(samples);
}

void real_fft::backward(std::span<double> spectrum) noexcept {
    backward_small(spectrum);
    for (std::size_t left = octaves_.size(); left > 0; --left) {
        const octave& part = octaves_[left - 1];
        gather(part, spectrum);
        double* differences = folded_.data() + part.samples / 2;
        part.transform.backward(spectrum_.data(), differences, differences + part.samples / 4);
        fold(folded_.data(), folded_.data(), part.samples);
    }
    std::copy(folded_.begin(), folded_.end(), spectrum.begin());
}

void real_fft::scatter(const octave& part, std::span<double> spectrum) const noexcept {
    for (std::size_t place = 0; place < part.targets.size(); ++place) {
        const double* value = spectrum_.data() + 8 * (place / 4) + place % 4;
        const std::int32_t target = part.targets[place];
        double* bin = spectrum.data() + (target < 0 ? ~target : target);
        bin[0] = value[0];
        bin[1] = target < 0 ? -value[4] : value[4];
    }
}

void real_fft::gather(const octave& part, std::span<const double> spectrum) noexcept {
    for (std::size_t place = 0; place < part.targets.size(); ++place) {
        double* value = spectrum_.data() + 8 * (place / 4) + place % 4;
        const std::int32_t target = part.targets[place];
        const double* bin = spectrum.data() + (target < 0 ? ~target : target);
        value[0] = bin[0];
        value[4] = target < 0 ? -bin[1] : bin[1];
    }
}

void real_fft::forward_small(std::span<double> spectrum) noexcept {
    const std::size_t spread = size_ / small_size_;
    for (std::size_t samples = small_size_; samples >= 4; samples /= 2) {
        fold(folded_.data(), folded_.data(), samples);
        const std::size_t points = samples / 4;
        const double* differences = folded_.data() + samples / 2;
        std::array<complex, small_right_angle_fft::most_points> values;
        for (std::size_t i = 0; i < points; ++i) {
            values[i] = {differences[i], differences[i + points]};
        }
        small_.forward({values.data(), points});
        for (std::size_t place = 0; place < points; ++place) {
            const odd_bin bin = odd_bin_of(small_right_angle_fft::root_number(place, points), samples);
            double* target = spectrum.data() + 2 * bin.number * (small_size_ / samples) * spread;
            target[0] = values[place].real();
            target[1] = bin.is_mirrored ? -values[place].imag() : values[place].imag();
        }
    }
    spectrum[0] = folded_[0] + folded_[1];
    spectrum[1] = folded_[0] - folded_[1];
}

void real_fft::backward_small(std::span<const double> spectrum) noexcept {
    const std::size_t spread = size_ / small_size_;
    folded_[0] = (spectrum[0] + spectrum[1]) / 2.0;
    folded_[1] = (spectrum[0] - spectrum[1]) / 2.0;
    for (std::size_t samples = 4; samples <= small_size_; samples *= 2) {
        const std::size_t points = samples / 4;
        std::array<complex, small_right_angle_fft::most_points> values;
        for (std::size_t place = 0; place < points; ++place) {
            const odd_bin bin = odd_bin_of(small_right_angle_fft::root_number(place, points), samples);
            const double* source = spectrum.data() + 2 * bin.number * (small_size_ / samples) * spread;
            values[place] = {source[0], bin.is_mirrored ? -source[1] : source[1]};
        }
        small_.backward({values.data(), points});
        double* differences = folded_.data() + samples / 2;
        for (std::size_t i = 0; i < points; ++i) {
            differences[i] = values[i].real();
            differences[i + points] = values[i].imag();
        }
        fold(folded_.data(), folded_.data(), samples);
    }
}

} // namespace kelvane::ssrc
