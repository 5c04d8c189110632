// What the program asks the system about itself.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host {

/// The arguments behind the program's name, UTF-8.
std::vector<std::string> program_arguments(int count, char** arguments);

/// Where the running program's file lies.
std::filesystem::path program_file();

/// Whether standard error is a terminal that a person looks at.
bool is_error_stream_a_terminal();

/// Whether effects have settings dialogs here.
bool has_dialogs();

/// Makes the console take UTF-8.
void prepare_console();

} // namespace host
