// The program's commands. Each adds itself to the command line and runs when it is chosen; failures are exceptions.
#pragma once

#include <CLI/CLI.hpp>

namespace host {

/// `list`: the effects that the module offers.
void add_list_command(CLI::App& program);

/// `info`: what the module says of itself.
void add_info_command(CLI::App& program);

/// `settings`: an effect's settings in words.
void add_settings_command(CLI::App& program);

/// `preset`: preset files.
void add_preset_command(CLI::App& program);

/// `configure`: an effect's dialog.
void add_configure_command(CLI::App& program);

/// `process`: audio files through a chain of effects.
void add_process_command(CLI::App& program);

} // namespace host
