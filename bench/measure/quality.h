// What a converter does to the audio, as figures.
#pragma once

#include "bench/measure/tone.h"

#include <vector>

namespace bench {

/// Signal to noise of a tone.
double signal_to_noise_db(const tone_path& path, const conversion& rates, double frequency_hz);

/// The lowest frequency, to the hertz, at which the response has fallen by so much from that at 997 Hz. Not a number
/// when it has not fallen so far 2 Hz below half the input rate.
double edge_hz(const tone_path& path, const conversion& rates, double fallen_db);

/// How far below a tone that goes in its image lies, which stands as far above half the input rate as the tone below.
double image_attenuation_db(const tone_path& path, const conversion& rates, double frequency_hz);

/// How far below a tone that goes in its alias lies, which stands at the frequency asked for, as far below half the
/// output rate as the tone above. Infinite when there is none.
double alias_attenuation_db(const tone_path& path, const conversion& rates, double alias_hz);

/// A sine that goes in even speed from 0 to half the input rate, converted.
std::vector<double> convert_sweep(const converter_kind& kind, const conversion& rates, double seconds);

} // namespace bench
