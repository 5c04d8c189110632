#include "host/module/effect_catalogue.h"

#include "effects/channels/layout_settings.h"
#include "host/module/guid_text.h"
#include "host/objects/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace host {

namespace {

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words(1);
    for (const char letter : text) {
        if (letter == ' ' || letter == '(' || letter == ')' || letter == '/') {
            words.emplace_back();
        } else {
            words.back() += lower(letter);
        }
    }
    std::erase(words, "");
    return words;
}

bool is_abbreviation(const std::vector<std::string>& typed, const std::vector<std::string>& name) {
    auto next = name.begin();
    for (const std::string& word : typed) {
        next = std::find_if(next, name.end(), [&](const std::string& whole) { return whole.starts_with(word); });
        if (next == name.end()) {
            return false;
        }
        ++next;
    }
    return true;
}

effect_entry describe(service_ptr<velmora::effect_factory> factory) {
    effect_entry entry;
    text name;
    factory->get_name(&name);
    entry.name = name.str();
    factory->get_identity(&entry.identity);
    entry.has_dialog = factory->has_settings_dialog();
    factory->get_default_preset(&entry.default_preset);
    entry.factory = std::move(factory);
    return entry;
}

template <class Settings>
effect_entry hidden_effect(const char* name) {
    effect_entry entry;
    entry.name = name;
    entry.identity = Settings::identity;
    entry.default_preset.set_owner(&Settings::identity);
    const auto payload = Settings{}.write();
    entry.default_preset.set_data(payload.data(), payload.size());
    return entry;
}

/// An effect that this host does not know goes by its GUID and has an empty default preset.
effect_entry describe(service_ptr<velmora::layout_effect_factory> factory) {
    effect_entry entry;
    factory->get_identity(&entry.identity);
    if (entry.identity == kelvane::layout_converter_settings::identity) {
        entry = hidden_effect<kelvane::layout_converter_settings>("layout_converter");
    } else if (entry.identity == kelvane::layout_limiter_settings::identity) {
        entry = hidden_effect<kelvane::layout_limiter_settings>("layout_limiter");
    } else {
        entry.name = to_text(entry.identity);
        entry.default_preset.set_owner(&entry.identity);
    }
    entry.hidden_factory = std::move(factory);
    return entry;
}

std::string names_of(const std::vector<const effect_entry*>& entries) {
    std::vector<std::string> quoted;
    quoted.reserve(entries.size());
    for (const effect_entry* entry : entries) {
        quoted.push_back(fmt::format("\"{}\"", entry->name));
    }
    return fmt::format("{}", fmt::join(quoted, ", "));
}

} // namespace

bool effect_entry::instantiate(velmora::effect_instance** out, const velmora::effect_preset& settings) const {
    return is_hidden() ? hidden_factory->instantiate(out, &settings) : factory->instantiate(out, &settings);
}

effect_catalogue::effect_catalogue(const loaded_module& module) {
    ask_module("the list of effects", [&] {
        for (velmora::service_factory* const record : module.services()) {
            const auto service = instance_of(*record);
            if (auto factory = query_as<velmora::effect_factory>(*service)) {
                effects_.push_back(describe(std::move(factory)));
            } else if (auto hidden = query_as<velmora::layout_effect_factory>(*service)) {
                effects_.push_back(describe(std::move(hidden)));
            }
        }
    });
}

const effect_entry& effect_catalogue::find(std::string_view name) const {
    const auto typed = words_of(name);
    if (typed.empty()) {
        throw effect_name_error("the name of an effect is empty; `kelvane-host list` shows the names");
    }
    const auto id = parse_guid(name);
    std::vector<const effect_entry*> abbreviated;
    for (const effect_entry& entry : effects_) {
        const auto words = words_of(entry.name);
        if (id == entry.identity || typed == words) {
            return entry;
        }
        if (is_abbreviation(typed, words)) {
            abbreviated.push_back(&entry);
        }
    }
    if (abbreviated.empty()) {
        throw effect_name_error(fmt::format("no effect is called \"{}\"; `kelvane-host list` shows them", name));
    }
    if (abbreviated.size() > 1) {
        throw effect_name_error(fmt::format("\"{}\" could be {}", name, names_of(abbreviated)));
    }
    return *abbreviated.front();
}

service_ptr<velmora::effect_instance> instantiate(const effect_entry& effect, const preset& settings) {
    const std::string refusal = fmt::format("the preset does not fit the effect \"{}\"", effect.name);
    velmora::effect_instance* made = nullptr;
    bool is_made = false;
    try {
        is_made = effect.instantiate(&made, settings);
    } catch (const std::exception& reason) {
        throw preset_error(fmt::format("{}: {}", refusal, reason.what()));
    }
    if (!is_made) {
        throw preset_error(refusal);
    }
    return service_ptr<velmora::effect_instance>(made);
}

} // namespace host
