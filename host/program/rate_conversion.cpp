#include "host/program/conversion_warning.h"

#include "host/settings/worded_settings.h"
#include "velmora/resampler_factory.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>

namespace host {

namespace {

/// A resampler's settings have its target under this name.
constexpr std::string_view target_field = "rate";

std::optional<std::uint32_t> target_rate_hz(const preset& settings) {
    for (const worded_field& field : describe_settings(settings)) {
        std::uint32_t rate_hz = 0;
        const char* const end = field.value.data() + field.value.size();
        if (field.name == target_field && std::from_chars(field.value.data(), end, rate_hz).ptr == end) {
            return rate_hz;
        }
    }
    return std::nullopt;
}

} // namespace

std::string conversion_warning(const effect_entry& effect, const preset& settings, std::uint32_t rate_hz) {
    const auto resampler = effect.is_hidden() ? nullptr : query_as<velmora::resampler_factory>(*effect.factory);
    const auto target_hz = resampler ? target_rate_hz(settings) : std::nullopt;
    if (target_hz.value_or(0) == 0 || resampler->is_conversion_supported(rate_hz, *target_hz)) {
        return "";
    }
    return fmt::format("cannot convert {} Hz to {} Hz", rate_hz, *target_hz);
}

} // namespace host
