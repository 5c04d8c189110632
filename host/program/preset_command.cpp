#include "host/module/guid_text.h"
#include "host/module/hex_text.h"
#include "host/platform/path_text.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/file_option.h"
#include "host/program/given_preset.h"
#include "host/program/module_option.h"
#include "host/program/settings_table.h"
#include "host/settings/preset_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace host {

namespace {

struct preset_options {
    std::string module_file;
    std::string file;
    std::string effect;
    std::string settings;
};

using shared_options = std::shared_ptr<preset_options>;

void make(const preset_options& options) {
    const open_module opened(options.module_file, print_notice);
    const auto file = path_from_utf8(options.file);
    if (std::filesystem::exists(file)) {
        throw preset_file_error(fmt::format("{}: is there already; `preset edit` changes it", options.file));
    }
    const effect_entry& effect = opened.catalogue.find(options.effect);
    preset made = effect.default_preset;
    if (!options.settings.empty()) {
        change_preset(made, effect.name, options.settings);
    }
    write_preset_file(file, made);
}

/// The display name of a preset's effect, or its GUID when the module does not have it.
std::string name_of(const effect_catalogue& catalogue, const velmora::guid& owner) {
    const auto& effects = catalogue.effects();
    const auto found =
        std::find_if(effects.begin(), effects.end(), [&](const auto& effect) { return effect.identity == owner; });
    return found == effects.end() ? to_text(owner) : found->name;
}

void show(const preset_options& options) {
    const open_module opened(options.module_file, print_notice);
    const preset shown = read_preset_file(path_from_utf8(options.file));
    print_settings(name_of(opened.catalogue, shown.owner()), shown);
    fmt::print("owner {}, payload {}\n", to_text(shown.owner()), to_hex(shown.payload()));
}

void edit(const preset_options& options) {
    const auto file = path_from_utf8(options.file);
    preset edited = read_preset_file(file);
    change_preset(edited, options.file, options.settings);
    write_preset_file(file, edited);
}

CLI::App& add_step(CLI::App& command, const std::string& name, const std::string& what,
                   void (*action)(const preset_options&), const shared_options& options) {
    CLI::App* const step = command.add_subcommand(name, what);
    step->add_option("FILE", options->file, "The preset file")->required()->type_name("")->check(not_empty());
    step->callback([action, options] { action(*options); });
    return *step;
}

} // namespace

void add_preset_command(CLI::App& program) {
    CLI::App* const command = program.add_subcommand("preset", "Make, show and change preset files");
    command->require_subcommand(1);
    const auto options = std::make_shared<preset_options>();
    CLI::App& made = add_step(*command, "make", "Write a new preset file", make, options);
    add_module_option(made, options->module_file);
    made.add_option("EFFECT", options->effect, "Name, abbreviation or GUID")->required()->type_name("");
    made.add_option("SETTINGS", options->settings, "field=value,field=value")->type_name("");
    CLI::App& shown = add_step(*command, "show", "Show what a preset file holds", show, options);
    add_module_option(shown, options->module_file);
    CLI::App& edited = add_step(*command, "edit", "Change a preset file", edit, options);
    edited.add_option("SETTINGS", options->settings, "field=value,field=value")->required()->type_name("");
}

} // namespace host
