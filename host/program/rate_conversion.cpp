#include "host/program/rate_conversion.h"

#include "host/settings/worded_settings.h"
#include "velmora/resampler_factory.h"

#include <fmt/format.h>

namespace host {

rate_conversion convert_rate(const effect_entry& effect, const preset& settings, std::uint32_t rate_hz) {
    const auto resampler = effect.is_hidden() ? nullptr : query_as<velmora::resampler_factory>(*effect.factory);
    const std::uint32_t wanted_hz = wanted_rate_hz(settings, rate_hz);
    if (!resampler || wanted_hz == rate_hz || wanted_hz == 0) {
        return {rate_hz, ""};
    }
    if (!resampler->is_conversion_supported(rate_hz, wanted_hz)) {
        return {rate_hz, fmt::format("cannot convert {} Hz to {} Hz", rate_hz, wanted_hz)};
    }
    return {wanted_hz, ""};
}

} // namespace host
