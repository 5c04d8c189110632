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
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr auto footer = "Exit codes: 0 done; 1 the work could not be done; 2 wrong command line; 130 interrupted.";

/// The parser misses a command before it looks at the word that stands in its place.
std::string fault_of(const CLI::App& program, const CLI::ParseError& wrong) {
    const auto unknown = program.remaining(true);
    const bool misses_command = wrong.get_name() == "RequiredError" &&
                                std::string_view(wrong.what()).find("subcommand") != std::string_view::npos;
    if (!misses_command) {
        return wrong.what();
    }
    if (unknown.empty()) {
        return "a command is missing";
    }
    return (unknown.front().starts_with('-') ? "there is no option \"" : "there is no command \"") + unknown.front() +
           '"';
}

int run(std::vector<std::string> arguments) {
    CLI::App program("Runs the effects of a Velmora module over audio files.", "kelvane-host");
    program.footer(footer);
    program.set_version_flag("--version", "kelvane-host " KELVANE_VERSION,
                             "Show the program's version; `info` has the module's");
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
        host::print_error(fault_of(program, wrong) + "; --help tells more");
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
