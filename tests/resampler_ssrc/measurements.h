// What a conversion does to tones and impulses.
#pragma once

#include "tests/resampler_ssrc/conversions.h"

#include <cstddef>
#include <cstdint>

namespace testing_support {

/// A tone of amplitude 1 behind the conversion.
struct tone_result {
    double gain_db;
    double rest_db;      ///< all else, relative to the tone that went in
    double delay_frames; ///< of the phase, in output frames; positive when it comes late
};

/// `seconds` of a cosine, besides the ends that the filters reach.
tone_result measure_tone(const rate_pair& rates, std::uint32_t frequency_hz, double seconds);

/// The level of all that comes out for a tone that should vanish.
double measure_rest_db(const rate_pair& rates, std::uint32_t frequency_hz, double seconds);

/// The least frequency, in whole Hz, of an image or alias that has to be gone, and for the way up the tone that makes
/// it.
struct band_edges {
    std::uint32_t pass_hz; ///< the last frequency of unity gain
    std::uint32_t stop_hz; ///< the first beyond the transition band and 25 Hz more
};
band_edges edges_of(const rate_pair& rates);

/// The largest difference between both halves of the response to an impulse whose middle falls on a frame of output or
/// between two; and by how many frames the middle lies off the impulse's time.
struct impulse_result {
    double asymmetry;
    double delay_frames;
};
impulse_result measure_impulse(const rate_pair& rates);

} // namespace testing_support
