// Rates that a resampler cannot convert.
#pragma once

#include "host/module/effect_catalogue.h"

#include <cstdint>
#include <string>

namespace host {

/// What a person should know when the effect is a resampler that says it cannot convert `rate_hz` to the rate of its
/// settings; otherwise empty. Such a resampler leaves the rate as it is, or fails. The rate 0 is none.
std::string conversion_warning(const effect_entry& effect, const preset& settings, std::uint32_t rate_hz);

} // namespace host
