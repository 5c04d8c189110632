#include "host/program/given_preset.h"

#include "host/module/hex_text.h"
#include "host/platform/path_text.h"
#include "host/settings/preset_file.h"
#include "host/settings/worded_settings.h"

#include <fmt/format.h>

namespace host {

namespace {

std::string fault_of_hex(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEFabcdef";
    const bool has_only_digits = text.find_first_not_of(digits) == std::string_view::npos;
    return has_only_digits && text.size() % 2 != 0 ? "has half a byte too many: a byte is two digits"
                                                   : "is not a row of hexadecimal bytes";
}

preset preset_of_bytes(const effect_entry& effect, const std::string& hex) {
    const auto payload = parse_hex(hex);
    if (!payload) {
        throw preset_error(fmt::format("--preset \"{}\" {}", hex, fault_of_hex(hex)));
    }
    preset made = effect.default_preset;
    made.set_data(payload->data(), payload->size());
    return made;
}

} // namespace

preset given_preset(const effect_entry& effect, const std::string& given) {
    if (!given.starts_with('@')) {
        return preset_of_bytes(effect, given);
    }
    const std::string file = given.substr(1);
    if (file.empty()) {
        throw preset_error("--preset \"@\" names no file");
    }
    preset loaded = read_preset_file(path_from_utf8(file));
    check_owner(effect, loaded, file);
    return loaded;
}

void check_owner(const effect_entry& effect, const preset& loaded, const std::string& file) {
    if (loaded.owner() != effect.identity) {
        throw preset_error(fmt::format("{} is a preset of another effect than \"{}\"", file, effect.name));
    }
}

void change_preset(preset& changed, const std::string& owner, std::string_view assignments) {
    try {
        change_settings(changed, assignments);
    } catch (const std::runtime_error& refused) {
        throw preset_error(fmt::format("{}: {}", owner, refused.what()));
    }
}

} // namespace host
