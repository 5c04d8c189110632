#include "host/settings/worded_settings.h"

#include "effects/effect_settings.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

namespace host {

namespace {

struct assignment {
    std::string field;
    std::string value;
};

bool takes_rest(const kelvane::settings_words& words, std::string_view name) {
    const auto fields = words.fields();
    return std::any_of(fields.begin(), fields.end(),
                       [name](const auto& field) { return field.name == name && field.takes_rest; });
}

/// Cuts a text at the first `separator` and takes both away from it.
std::string cut_until(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    std::string before(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return before;
}

std::string cut_quoted(std::string_view& text) {
    text.remove_prefix(1);
    if (text.find('"') == std::string_view::npos) {
        throw settings_text_error("a quotation mark is not closed");
    }
    std::string value = cut_until(text, '"');
    if (!cut_until(text, ',').empty()) {
        throw settings_text_error(fmt::format("a comma must follow \"{}\"", value));
    }
    return value;
}

std::string cut_value(std::string_view& text, bool is_rest) {
    if (text.starts_with('"')) {
        return cut_quoted(text);
    }
    return cut_until(text, is_rest ? '\0' : ',');
}

std::vector<assignment> parse(const kelvane::settings_words& words, std::string_view text) {
    std::vector<assignment> assignments;
    while (!text.empty()) {
        if (text.find('=') == std::string_view::npos) {
            throw settings_text_error(fmt::format("\"{}\" is not of the form field=value", text));
        }
        const std::string field = cut_until(text, '=');
        assignments.push_back({field, cut_value(text, takes_rest(words, field))});
    }
    return assignments;
}

} // namespace

std::vector<worded_field> describe_settings(const preset& settings) {
    const kelvane::settings_words* const words = kelvane::find_settings_words(settings.owner());
    std::vector<worded_field> described;
    if (words == nullptr) {
        return described;
    }
    const auto fields = words->fields();
    const auto defaults = words->values(words->defaults());
    const auto values = words->values(settings.payload());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        described.push_back(
            {fields[i].name, fields[i].unit, fields[i].range, fields[i].meaning, defaults[i], values[i]});
    }
    return described;
}

std::string warning_of(const preset& settings, std::uint32_t rate_hz) {
    const kelvane::settings_words* const words = kelvane::find_settings_words(settings.owner());
    return words == nullptr ? "" : words->warning(settings.payload(), rate_hz);
}

std::uint32_t wanted_rate_hz(const preset& settings, std::uint32_t rate_hz) {
    const kelvane::settings_words* const words = kelvane::find_settings_words(settings.owner());
    return words == nullptr ? rate_hz : words->wanted_rate_hz(settings.payload(), rate_hz);
}

std::vector<std::byte> changed_payload(const kelvane::settings_words& words, std::vector<std::byte> payload,
                                       std::string_view assignments) {
    try {
        for (const assignment& assigned : parse(words, assignments)) {
            payload = words.with(payload, assigned.field, assigned.value);
        }
    } catch (const kelvane::setting_error& refused) {
        throw settings_text_error(refused.what());
    }
    return payload;
}

void change_settings(preset& changed, std::string_view assignments) {
    const kelvane::settings_words* const words = kelvane::find_settings_words(changed.owner());
    if (words == nullptr) {
        throw settings_text_error("the effect has no settings");
    }
    const auto payload = changed_payload(*words, changed.payload(), assignments);
    changed.set_data(payload.data(), payload.size());
}

} // namespace host
