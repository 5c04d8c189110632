// Other libraries' sample-rate converters.
#pragma once

#include "bench/measure/converters.h"

namespace bench {

// Each takes and gives the samples in the form that suits it best: 32-bit floats, save for libswresample and libsoxr at
// its full precision, which take doubles as ours do. To make one throws std::runtime_error when the library refuses.

/// libswresample with the taps of our levels, zita-resampler, speexdsp, libsamplerate and libsoxr at their settings.
std::vector<converter_kind> speed_peers();

/// libswresample as it comes and with a long filter, libsamplerate's settings, and libsoxr's of full precision.
std::vector<converter_kind> quality_peers();

} // namespace bench
