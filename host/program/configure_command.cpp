#include "host/platform/path_text.h"
#include "host/platform/program.h"
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

struct configure_options {
    std::string module_file;
    std::string effect;
    std::string preset_file;
};

void run(const configure_options& options) {
    const open_module opened(options.module_file, print_notice);
    const effect_entry& effect = opened.catalogue.find(options.effect);
    if (!effect.has_dialog) {
        throw preset_error(fmt::format("\"{}\" has no settings dialog", effect.name));
    }
    const auto file = path_from_utf8(options.preset_file);
    const bool has_file = !options.preset_file.empty();
    const bool is_new = has_file && !std::filesystem::exists(file);
    preset edited = has_file && !is_new ? read_preset_file(file) : effect.default_preset;
    check_owner(effect, edited, options.preset_file);
    if (!has_dialogs()) {
        throw preset_error(
            fmt::format("the dialog of \"{}\" exists on Windows; `preset edit` changes the file", effect.name));
    }
    const bool is_changed =
        ask_module(fmt::format("\"{}\"", effect.name), [&] { return effect.factory->edit_settings(&edited, nullptr); });
    if (is_new || (is_changed && has_file)) {
        write_preset_file(file, edited);
    }
    print_settings(effect.name, edited);
}

} // namespace

void add_configure_command(CLI::App& program) {
    CLI::App* const command =
        program.add_subcommand("configure", "Open an effect's settings dialog, where the platform has dialogs");
    const auto options = std::make_shared<configure_options>();
    add_module_option(*command, options->module_file);
    command->add_option("EFFECT", options->effect, "Name, abbreviation or GUID")->required()->type_name("");
    command->add_option("PRESET", options->preset_file, "The preset file to change; made if it is missing")
        ->type_name("FILE")
        ->check(not_empty());
    command->callback([options] { run(*options); });
}

} // namespace host
