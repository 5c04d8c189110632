// The option that every command shares: which module.
#pragma once

#include "host/module/effect_catalogue.h"
#include "host/module/loaded_module.h"
#include "host/objects/api.h"

#include <CLI/CLI.hpp>

#include <string>

namespace host {

/// Adds `--module FILE` to a command. `file` must live until the command has run.
void add_module_option(CLI::App& command, std::string& file);

/// An open module with what the program needs around it. The order of the fields is that of their lives.
struct open_module {
    /// `file` empty stands for the module beside the program. Throws `module_error`.
    open_module(const std::string& file, api::console print);

    api host_api;
    loaded_module module;
    effect_catalogue catalogue;
};

} // namespace host
