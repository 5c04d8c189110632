#include "bench/measure/quality.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace bench {

namespace {

constexpr std::size_t tone_frames = 50'000;
constexpr double reference_hz = 997.0;
constexpr double scan_step_hz = 250.0;
constexpr double edge_accuracy_hz = 0.5;
constexpr double least_image_distance_hz = 4.0; ///< at which a tone of `tone_frames` can be told from its image

double decibels(double amplitude) {
    return 20.0 * std::log10(amplitude / tone_amplitude);
}

double response_db(const tone_path& path, const conversion& rates, double frequency_hz) {
    const std::vector<double> out = path(rates, frequency_hz, tone_frames);
    return decibels(amplitude_at(out, frequency_hz / rates.output_hz));
}

} // namespace

double signal_to_noise_db(const tone_path& path, const conversion& rates, double frequency_hz) {
    const std::vector<double> out = path(rates, frequency_hz, tone_frames);
    return measure_tone(out, frequency_hz / rates.output_hz).signal_to_noise_db;
}

double edge_hz(const tone_path& path, const conversion& rates, double fallen_db) {
    const double limit_db = response_db(path, rates, reference_hz) - fallen_db;
    const auto is_above = [&](double hz) { return response_db(path, rates, hz) >= limit_db; };
    const double end_hz = (rates.input_hz - least_image_distance_hz) / 2.0;
    double above_hz = reference_hz;
    double below_hz = reference_hz + scan_step_hz;
    for (; is_above(below_hz); below_hz = std::min(below_hz + scan_step_hz, end_hz)) {
        if (below_hz == end_hz) {
            return std::numeric_limits<double>::quiet_NaN();
        }
        above_hz = below_hz;
    }
    while (below_hz - above_hz > edge_accuracy_hz) {
        const double middle_hz = std::midpoint(above_hz, below_hz);
        (is_above(middle_hz) ? above_hz : below_hz) = middle_hz;
    }
    return std::midpoint(above_hz, below_hz);
}

double image_attenuation_db(const tone_path& path, const conversion& rates, double frequency_hz) {
    const std::vector<double> out = path(rates, frequency_hz, tone_frames);
    const double image_hz = rates.input_hz - frequency_hz;
    return -decibels(amplitude_beside(out, image_hz / rates.output_hz, frequency_hz / rates.output_hz));
}

double alias_attenuation_db(const tone_path& path, const conversion& rates, double alias_hz) {
    const std::vector<double> out = path(rates, rates.output_hz - alias_hz, tone_frames);
    return -decibels(amplitude_at(out, alias_hz / rates.output_hz));
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
