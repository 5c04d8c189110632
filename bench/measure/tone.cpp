#include "bench/measure/tone.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <stdexcept>

namespace bench {

namespace {

constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double settling_s = 0.2;
constexpr double longest_latency_s = 0.5;

/// The amplitudes of cosine (real) and sine (imaginary) at a frequency, by least squares.
std::complex<double> fit(std::span<const double> signal, double cycles_per_frame) {
    double cc = 0.0;
    double ss = 0.0;
    double cs = 0.0;
    double xc = 0.0;
    double xs = 0.0;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double angle = two_pi * cycles_per_frame * static_cast<double>(i);
        const double c = std::cos(angle);
        const double s = std::sin(angle);
        cc += c * c;
        ss += s * s;
        cs += c * s;
        xc += signal[i] * c;
        xs += signal[i] * s;
    }
    const double determinant = cc * ss - cs * cs;
    return {(xc * ss - xs * cs) / determinant, (xs * cc - xc * cs) / determinant};
}

/// The fitted tone, and the signal without it.
struct parted_signal {
    std::complex<double> fitted;
    std::vector<double> rest;
};

parted_signal part(std::span<const double> signal, double cycles_per_frame) {
    parted_signal parted{fit(signal, cycles_per_frame), {signal.begin(), signal.end()}};
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double angle = two_pi * cycles_per_frame * static_cast<double>(i);
        parted.rest[i] -= parted.fitted.real() * std::cos(angle) + parted.fitted.imag() * std::sin(angle);
    }
    return parted;
}

/// The frequency at which the phases of the two halves agree.
double refine(std::span<const double> signal, double cycles_per_frame) {
    const std::size_t half = signal.size() / 2;
    const std::complex<double> first = fit(signal.first(half), cycles_per_frame);
    const std::complex<double> second = fit(signal.subspan(half), cycles_per_frame);
    const double turned = two_pi * cycles_per_frame * static_cast<double>(half);
    const double moved = std::arg(first * std::conj(second) * std::polar(1.0, -turned));
    return cycles_per_frame + moved / (two_pi * static_cast<double>(half));
}

double refine_well(std::span<const double> signal, double cycles_per_frame) {
    for (int pass = 0; pass < 3; ++pass) {
        cycles_per_frame = refine(signal, cycles_per_frame);
    }
    return cycles_per_frame;
}

/// Rounded in its samples alone: for frequencies of few digits the remainder is exact.
std::vector<double> make_tone(double frequency_hz, double rate_hz, std::size_t frames) {
    std::vector<double> made(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double cycle = std::fmod(frequency_hz * static_cast<double>(i), rate_hz) / rate_hz;
        made[i] = tone_amplitude * std::sin(two_pi * cycle);
    }
    return made;
}

} // namespace

tone_path path_through(const converter_kind& kind) {
    return [kind](const conversion& rates, double frequency_hz, std::size_t frames) {
        const double output_s = settling_s + static_cast<double>(frames) / rates.output_hz;
        const auto input_frames = static_cast<std::size_t>((output_s + longest_latency_s) * rates.input_hz);
        const auto used = kind.make(rates);
        const std::vector<double> out = convert_all(*used, make_tone(frequency_hz, rates.input_hz, input_frames), 1);
        const auto settled = static_cast<std::size_t>(settling_s * rates.output_hz);
        const std::span<const double> steady = std::span(out).subspan(std::min(settled, out.size()));
        if (steady.size() < frames) {
            throw std::runtime_error(kind.name() + " holds too much back");
        }
        return std::vector<double>(steady.begin(), steady.begin() + static_cast<std::ptrdiff_t>(frames));
    };
}

tone_path ideal_path() {
    return [](const conversion& rates, double frequency_hz, std::size_t frames) {
        const bool is_held = 2.0 * frequency_hz < std::min(rates.input_hz, rates.output_hz);
        return is_held ? make_tone(frequency_hz, rates.output_hz, frames) : std::vector<double>(frames);
    };
}

tone measure_tone(std::span<const double> signal, double cycles_per_frame) {
    const parted_signal parted = part(signal, refine_well(signal, cycles_per_frame));
    double noise = 0.0;
    for (const double sample : parted.rest) {
        noise += sample * sample;
    }
    const double power = std::norm(parted.fitted) / 2.0 * static_cast<double>(signal.size());
    return {std::abs(parted.fitted), 10.0 * std::log10(power / noise)};
}

double amplitude_at(std::span<const double> signal, double cycles_per_frame) {
    return std::abs(fit(signal, cycles_per_frame));
}

double amplitude_beside(std::span<const double> signal, double cycles_per_frame, double louder_cycles_per_frame) {
    return amplitude_at(part(signal, refine_well(signal, louder_cycles_per_frame)).rest, cycles_per_frame);
}

} // namespace bench
