// How clean a tone comes out of a converter.
#pragma once

#include "bench/measure/converters.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace bench {

/// Of the tones that go in: 1 dB below full scale.
inline constexpr double tone_amplitude = 0.8912509381337456;

/// What comes out of a conversion for a tone of so many hertz: so many frames of the steady state.
using tone_path = std::function<std::vector<double>(const conversion& rates, double frequency_hz, std::size_t frames)>;

/// Through a new converter for each tone.
tone_path path_through(const converter_kind& kind);

/// No converter: the tone computed at the output rate, or silence when one of the rates cannot hold it. What is found
/// in it is the limit of what the measurements can see.
tone_path ideal_path();

struct tone {
    double amplitude;
    double signal_to_noise_db; ///< how far all that is not the tone lies below it
};

/// Finds by least squares the tone that stands close to a frequency. The exact one is taken from how its phase moves
/// along the signal: a converter whose ratio is rounded shifts it a little without adding noise.
tone measure_tone(std::span<const double> signal, double cycles_per_frame);

/// The amplitude of what stands at a frequency, by least squares.
double amplitude_at(std::span<const double> signal, double cycles_per_frame);

/// The same with the much louder tone close to another frequency left out.
double amplitude_beside(std::span<const double> signal, double cycles_per_frame, double louder_cycles_per_frame);

} // namespace bench
