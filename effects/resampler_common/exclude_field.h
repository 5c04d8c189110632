// The rates that a sample-rate converter leaves alone, in words.
#pragma once

#include "frame/settings_words.h"

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

} // namespace kelvane
