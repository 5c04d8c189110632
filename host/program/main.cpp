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

bool has(const std::string& text, std::string_view words) {
    return text.find(words) != std::string::npos;
}

std::string fault_of_unknown(const std::string& word, bool is_command) {
    if (word.starts_with('-')) {
        return "there is no option \"" + word + '"';
    }
    return is_command ? "there is no command \"" + word + '"' : '"' + word + "\" is a word too many";
}

/// Of an option. The parser's text begins with its name.
std::string fault_of_count(const std::string& text) {
    const std::string name = text.substr(0, text.find(": "));
    return name + (has(text, "At Most") ? " is there more than once" : " has nothing behind it");
}

/// The parser misses a command before it looks at the word that stands in its place.
std::string fault_of(const CLI::App& program, const CLI::ParseError& wrong) {
    const std::string text = wrong.what();
    const auto kind = static_cast<CLI::ExitCodes>(wrong.get_exit_code());
    const auto unknown = program.remaining(true);
    const bool misses_command = kind == CLI::ExitCodes::RequiredError && has(text, "subcommand");
    if (misses_command && unknown.empty()) {
        return "a command is missing";
    }
    if (misses_command || kind == CLI::ExitCodes::ExtrasError) {
        return fault_of_unknown(unknown.front(), misses_command);
    }
    return kind == CLI::ExitCodes::ArgumentMismatch ? fault_of_count(text) : text;
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
