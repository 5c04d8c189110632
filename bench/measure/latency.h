// How long a converter keeps what goes into it.
#pragma once

#include "bench/measure/converters.h"

namespace bench {

/// How much more sound has gone into a converter than has come out, after each block of its steady state. For a
/// converter whose output is aligned with its input this is the time from a frame's going in to its coming out.
struct latency {
    double least_s;
    double most_s;
};

/// In blocks of 1024 frames, as a player feeds them, from the third second to the end of the sixth.
latency measure_latency(const converter_kind& kind, const conversion& rates);

} // namespace bench
