// The rates that a sample-rate converter leaves alone, in words.
#pragma once

#include "frame/rate_exclusion_list.h"
#include "frame/settings_words.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane {

/// The field of settings with a flag `excludes` and a text `exclusions`: the text while the flag is set, and nothing
/// else. An empty value clears the flag.
template <class Settings>
described_field<Settings> exclude_field() {
    return {{.name = "exclude",
             .unit = "",
             .range = "rates and ranges in Hz such as 44100;88200-96000, or nothing",
             .meaning = "the input rates that are left alone",
             .takes_rest = true},
            [](const Settings& settings) { return settings.excludes ? settings.exclusions : std::string(); },
            [](Settings& settings, std::string_view text) {
                settings.exclusions = text;
                settings.excludes = !text.empty();
                return true;
            }};
}

/// A warning of an exclusion text that has settings in it: what stood behind the field belongs to its value.
template <class Settings>
std::string warning_of_exclusions(const Settings& settings) {
    if (!settings.excludes || settings.exclusions.find('=') == std::string::npos) {
        return "";
    }
    return "exclude takes all that is behind it, here \"" + settings.exclusions + "\"; other settings go before it";
}

/// The target rate, but for a rate that is excluded that rate. Both in Hz.
template <class Settings>
std::uint32_t wanted_rate_hz(const Settings& settings, std::uint32_t rate_hz) {
    const bool is_left_alone = settings.excludes && is_excluded(parse_rate_exclusions(settings.exclusions), rate_hz);
    return is_left_alone ? rate_hz : settings.target_rate_hz;
}

} // namespace kelvane
