// What the resamplers of a chain make of a sample rate.
#pragma once

#include "host/module/effect_catalogue.h"

#include <cstdint>
#include <string>

namespace host {

struct rate_conversion {
    std::uint32_t rate_hz; ///< behind the effect
    std::string warning;   ///< what a person should know, or nothing
};

/// What becomes of audio at `rate_hz`. A resampler turns it into the rate of its settings, unless they exclude it, or
/// unless it says that it cannot: then it leaves the rate as it is, or fails, and that is warned of. The rate 0 is none
/// to be made. Other effects keep the rate.
rate_conversion convert_rate(const effect_entry& effect, const preset& settings, std::uint32_t rate_hz);

} // namespace host
