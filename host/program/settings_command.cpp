#include "host/platform/path_text.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/file_option.h"
#include "host/program/given_preset.h"
#include "host/program/module_option.h"
#include "host/program/settings_table.h"
#include "host/settings/preset_file.h"

#include <fmt/format.h>

#include <memory>

namespace host {

namespace {

struct settings_options {
    std::string module_file;
    std::string effect;
    std::string preset_file;
};

void run(const settings_options& options) {
    const open_module opened(options.module_file, print_notice);
    const effect_entry& effect = opened.catalogue.find(options.effect);
    preset shown = effect.default_preset;
    if (!options.preset_file.empty()) {
        shown = read_preset_file(path_from_utf8(options.preset_file));
        check_owner(effect, shown, options.preset_file);
    }
    print_settings(effect.name, shown);
}

} // namespace

void add_settings_command(CLI::App& program) {
    CLI::App* const command =
        program.add_subcommand("settings", "Show an effect's settings: unit, range, default, and a preset's values");
    const auto options = std::make_shared<settings_options>();
    add_module_option(*command, options->module_file);
    command->add_option("EFFECT", options->effect, "Name, abbreviation or GUID")->required()->type_name("");
    command->add_option("PRESET", options->preset_file, "A preset file; otherwise the default preset")
        ->type_name("FILE")
        ->check(not_empty());
    command->callback([options] { run(*options); });
}

} // namespace host
