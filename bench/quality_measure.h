// What a converter does to the audio, as figures.
#pragma once

#include "bench/tone_measure.h"

namespace bench {

struct converter_quality {
    double low_tone_db;   ///< signal to noise of 997 Hz, 44100 to 48000 Hz
    double high_tone_db;  ///< of 15 kHz
    double edge_hz;       ///< where the response of that conversion is 0.1 dB below that at 997 Hz
    double half_power_hz; ///< where it is 3 dB below
    double near_image_db; ///< of 20 kHz, 44100 to 96000 Hz: how far what stands at 24.1 kHz lies below the input
    double far_image_db;  ///< of 15 kHz: the same at 29.1 kHz
    double near_alias_db; ///< of 24.1 kHz, 96000 to 44100 Hz: how far what stands at 20 kHz lies below the input
    double far_alias_db;  ///< of 29.1 kHz: the same at 15 kHz
};

converter_quality measure_quality(const converter_kind& kind);

/// A sine that goes in even speed from 0 to half the input rate, converted.
std::vector<double> convert_sweep(const converter_kind& kind, const conversion& rates, double seconds);

} // namespace bench
