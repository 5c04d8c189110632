// kelvane-host: a stand-in for the player, on the command line.
#include "host/chain/album.h"
#include "host/platform/program.h"
#include "host/program/commands.h"
#include "host/program/console.h"
#include "host/program/exit_code.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

namespace {

constexpr auto footer = "Exit codes: 0 done; 1 the work could not be done; 2 wrong command line; 130 interrupted.";

int run(std::vector<std::string> arguments) {
    CLI::App program("Runs the effects of a Velmora module over audio files.", "kelvane-host");
    program.footer(footer);
    program.require_subcommand(1);
    program.allow_windows_style_options(false); // "/music/a.wav" is a file on every platform
    host::add_list_command(program);
    host::add_info_command(program);
    host::add_settings_command(program);
    host::add_preset_command(program);
    host::add_configure_command(program);
    host::add_process_command(program);
    for (CLI::App* const command : program.get_subcommands({})) {
        command->footer(footer);
    }
    try {
        std::reverse(arguments.begin(), arguments.end()); // as the parser wants them
        program.parse(arguments);
        return host::exit_success;
    } catch (const CLI::Success& asked_for_help) {
        return program.exit(asked_for_help);
    } catch (const CLI::ParseError& wrong) {
        program.exit(wrong, std::cout, std::cerr);
        return host::exit_usage;
    }
}

/// A full disk behind standard output shows only when the last buffer goes there.
void flush_output() {
    if (std::fflush(stdout) != 0) {
        throw std::system_error(errno, std::generic_category(), "standard output cannot be written");
    }
}

} // namespace

int main(int count, char** arguments) {
    try {
        host::prepare_console();
        const int code = run(host::program_arguments(count, arguments));
        flush_output();
        return code;
    } catch (const host::interrupted&) {
        host::print_error("interrupted; nothing was written");
        return host::exit_interrupted;
    } catch (const std::exception& failure) {
        host::print_error(failure.what());
        return host::exit_failure;
    }
}
