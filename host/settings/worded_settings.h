// Changing a preset by words.
#pragma once

#include "host/objects/preset.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {
class settings_words;
}

namespace host {

/// The text is no list of settings, or the effect does not take it; the message says why.
class settings_text_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One field of an effect's settings with the value that a preset gives it.
struct worded_field {
    std::string name;
    std::string unit;
    std::string range;
    std::string meaning;
    std::string default_value;
    std::string value;
};

/// The settings that `settings` holds, in words; none for an effect without settings.
std::vector<worded_field> describe_settings(const preset& settings);

/// What a person should know of the settings at a sample rate; empty when there is nothing.
std::string warning_of(const preset& settings, std::uint32_t rate_hz);

/// The rate in Hz that the settings want audio at `rate_hz` to leave their effect with.
std::uint32_t wanted_rate_hz(const preset& settings, std::uint32_t rate_hz);

/// The payload with "field=value,field=value" applied, by the words of its effect. Throws `settings_text_error`.
std::vector<std::byte> changed_payload(const kelvane::settings_words& words, std::vector<std::byte> payload,
                                       std::string_view assignments);

/// Applies "field=value,field=value" to a preset. A value in double quotes may hold commas; a field that is a list of
/// its own (exclude) takes everything up to the end. Throws `settings_text_error`.
void change_settings(preset& changed, std::string_view assignments);

} // namespace host
