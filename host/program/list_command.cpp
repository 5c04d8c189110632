#include "host/module/guid_text.h"
#include "host/module/hex_text.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/module_option.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace host {

namespace {

struct list_options {
    std::string module_file;
    bool as_json = false;
};

std::string payload_text(const effect_entry& effect) {
    const std::string hex = to_hex(effect.default_preset.payload());
    return hex.empty() ? "(empty)" : hex;
}

void print_table(const std::vector<effect_entry>& effects) {
    constexpr std::size_t guid_width = 38;
    std::size_t name_width = 0;
    for (const effect_entry& effect : effects) {
        name_width = std::max(name_width, effect.name.size());
    }
    fmt::print("{:{}}  {:{}}  {:6}  {}\n", "Effect", name_width, "GUID", guid_width, "Dialog", "Default preset");
    for (const effect_entry& effect : effects) {
        fmt::print("{:{}}  {}  {:6}  {}\n", effect.name, name_width, to_text(effect.identity),
                   effect.has_dialog ? "yes" : "no", payload_text(effect));
    }
}

nlohmann::ordered_json as_json(const effect_entry& effect) {
    return {
        {"name", effect.name},
        {"guid", to_text(effect.identity)},
        {"is_hidden", effect.is_hidden()},
        {"has_dialog", effect.has_dialog},
        {"default_preset",
         {{"owner", to_text(effect.default_preset.owner())}, {"payload", to_hex(effect.default_preset.payload())}}}};
}

void run(const list_options& options) {
    const open_module opened(options.module_file, print_notice);
    const auto& effects = opened.catalogue.effects();
    if (!options.as_json) {
        print_table(effects);
        return;
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const effect_entry& effect : effects) {
        all.push_back(as_json(effect));
    }
    fmt::print("{}\n", all.dump(2));
}

} // namespace

void add_list_command(CLI::App& program) {
    CLI::App* const command = program.add_subcommand("list", "Show the effects that the module offers");
    const auto options = std::make_shared<list_options>();
    add_module_option(*command, options->module_file);
    command->add_flag("--json", options->as_json, "Write JSON instead of a table");
    command->callback([options] { run(*options); });
}

} // namespace host
