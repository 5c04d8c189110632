#include "host/program/module_option.h"

#include "host/platform/path_text.h"
#include "host/platform/program.h"
#include "host/program/file_option.h"

namespace host {

namespace {

#ifdef _WIN32
constexpr auto module_file_name = "kelvane.dll";
#else
constexpr auto module_file_name = "kelvane.so";
#endif

std::filesystem::path module_file(const std::string& chosen) {
    if (!chosen.empty()) {
        return path_from_utf8(chosen);
    }
    auto beside_program = program_file().parent_path() / module_file_name;
    if (!std::filesystem::exists(beside_program)) {
        throw module_error("there is no module " + to_utf8(beside_program) + "; --module names another");
    }
    return beside_program;
}

} // namespace

void add_module_option(CLI::App& command, std::string& file) {
    command.add_option("--module", file, "The module to load; otherwise the one beside this program")
        ->type_name("FILE")
        ->check(not_empty());
}

open_module::open_module(const std::string& file, api::console print)
    : host_api(std::move(print)), module(module_file(file), &host_api), catalogue(module) {}

} // namespace host
