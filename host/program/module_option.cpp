#include "host/program/module_option.h"

#include "host/platform/path_text.h"
#include "host/platform/program.h"

namespace host {

namespace {

#ifdef _WIN32
constexpr auto module_file_name = "kelvane.dll";
#else
constexpr auto module_file_name = "kelvane.so";
#endif

std::filesystem::path module_file(const std::string& chosen) {
    return chosen.empty() ? program_file().parent_path() / module_file_name : path_from_utf8(chosen);
}

} // namespace

void add_module_option(CLI::App& command, std::string& file) {
    command.add_option("--module", file, "The module to load; otherwise the one beside this program")
        ->type_name("FILE");
}

open_module::open_module(const std::string& file, api::console print)
    : host_api(std::move(print)), module(module_file(file), &host_api), catalogue(module) {}

void check_owner(const effect_entry& effect, const preset& loaded, const std::string& file) {
    if (loaded.owner() != effect.identity) {
        throw preset_error(file + " is a preset of another effect");
    }
}

} // namespace host
