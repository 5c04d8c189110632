#include "host/platform/program.h"

#include <unistd.h>

namespace host {

std::vector<std::string> program_arguments(int count, char** arguments) {
    return {arguments + 1, arguments + count};
}

std::filesystem::path program_file() {
    return std::filesystem::read_symlink("/proc/self/exe");
}

bool is_error_stream_a_terminal() {
    return isatty(STDERR_FILENO) != 0;
}

bool has_dialogs() {
    return false;
}

void prepare_console() {}

} // namespace host
