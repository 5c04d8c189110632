// What all options that take a file name ask of it.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace host {

/// As a script passes it whose variable is not set.
inline CLI::Validator not_empty() {
    return {[](const std::string& name) { return std::string(name.empty() ? "the file name is empty" : ""); }, ""};
}

} // namespace host
