#include "bench/quality_measure.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace bench {

namespace {

constexpr conversion common{44100, 48000, 1};
constexpr conversion upwards{44100, 96000, 1};
constexpr conversion downwards{96000, 44100, 1};

constexpr double low_tone_hz = 997.0;
constexpr double high_tone_hz = 15000.0;
constexpr double near_tone_hz = 20000.0;
constexpr std::size_t tone_frames = 50'000;
constexpr std::size_t response_frames = 8'000;
constexpr double response_step_hz = 50.0;

double decibels(double amplitude) {
    return 20.0 * std::log10(amplitude / tone_amplitude);
}

double signal_to_noise_db(const converter_kind& kind, double frequency_hz) {
    const std::vector<double> out = convert_tone(kind, common, frequency_hz, tone_frames);
    return measure_tone(out, frequency_hz / common.output_hz).signal_to_noise_db;
}

double response_db(const converter_kind& kind, double frequency_hz) {
    const std::vector<double> out = convert_tone(kind, common, frequency_hz, response_frames);
    return decibels(measure_tone(out, frequency_hz / common.output_hz).amplitude);
}

/// The lowest frequency at which the response has fallen by so much, on a straight line between two measured ones.
double edge_hz(const converter_kind& kind, double fallen_db) {
    const double limit_db = response_db(kind, low_tone_hz) - fallen_db;
    double last_db = limit_db + fallen_db;
    for (double hz = low_tone_hz + response_step_hz; hz < common.input_hz / 2.0; hz += response_step_hz) {
        const double now_db = response_db(kind, hz);
        if (now_db < limit_db) {
            return hz - response_step_hz * (limit_db - now_db) / (last_db - now_db);
        }
        last_db = now_db;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

/// The tone is there too, and louder.
double image_db(const converter_kind& kind, double frequency_hz) {
    const std::vector<double> out = convert_tone(kind, upwards, frequency_hz, tone_frames);
    const double image_hz = upwards.input_hz - frequency_hz;
    return -decibels(amplitude_beside(out, image_hz / upwards.output_hz, frequency_hz / upwards.output_hz));
}

double alias_db(const converter_kind& kind, double alias_hz) {
    const std::vector<double> out = convert_tone(kind, downwards, downwards.output_hz - alias_hz, tone_frames);
    return -decibels(measure_tone(out, alias_hz / downwards.output_hz).amplitude);
}

} // namespace

converter_quality measure_quality(const converter_kind& kind) {
    return {.low_tone_db = signal_to_noise_db(kind, low_tone_hz),
            .high_tone_db = signal_to_noise_db(kind, high_tone_hz),
            .edge_hz = edge_hz(kind, 0.1),
            .half_power_hz = edge_hz(kind, 3.0),
            .near_image_db = image_db(kind, near_tone_hz),
            .far_image_db = image_db(kind, high_tone_hz),
            .near_alias_db = alias_db(kind, near_tone_hz),
            .far_alias_db = alias_db(kind, high_tone_hz)};
}

std::vector<double> convert_sweep(const converter_kind& kind, const conversion& rates, double seconds) {
    std::vector<double> sweep(static_cast<std::size_t>(seconds * rates.input_hz));
    for (std::size_t i = 0; i < sweep.size(); ++i) {
        const auto frames = static_cast<double>(i);
        const double half_cycles = 0.5 * frames * frames / static_cast<double>(sweep.size());
        sweep[i] = tone_amplitude * std::sin(std::numbers::pi * half_cycles);
    }
    const auto used = kind.make(rates);
    return convert_all(*used, sweep, 1);
}

} // namespace bench
