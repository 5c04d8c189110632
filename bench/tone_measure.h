// How clean a tone comes out of a converter.
#pragma once

#include "bench/converters.h"

namespace bench {

/// Of the tones that go in: -1 dB below full scale.
inline constexpr double tone_amplitude = 0.8912509381337456;

struct tone {
    double amplitude;
    double signal_to_noise_db; ///< how far all that is not the tone lies below it
};

std::vector<double> make_tone(double cycles_per_frame, std::size_t frames);

/// What a new converter makes of a tone, without what comes out in the first and last tenth.
std::vector<double> convert_tone(const converter_kind& kind, const conversion& rates, double frequency_hz,
                                 std::size_t frames);

/// Finds by least squares the tone that stands close to a frequency. The exact one is taken from how its phase moves
/// along the signal: a converter whose ratio is rounded shifts it a little without adding noise.
tone measure_tone(std::span<const double> signal, double cycles_per_frame);

/// The amplitude of what stands at a frequency, by least squares, with the much louder tone at another one left out.
double amplitude_beside(std::span<const double> signal, double cycles_per_frame, double louder_cycles_per_frame);

} // namespace bench
