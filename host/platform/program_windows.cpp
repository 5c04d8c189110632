#include "host/platform/program.h"

#include "host/platform/path_text.h"

#include <windows.h>

// The command line's own functions need windows.h before them.
#include <shellapi.h>

#include <memory>

namespace host {

std::vector<std::string> program_arguments(int, char**) {
    // The arguments of `main` are in the system's code page, which does not hold every file name.
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(to_utf8(wide.get()[i]));
    }
    return arguments;
}

std::filesystem::path program_file() {
    std::wstring name(MAX_PATH, L'\0');
    while (GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())) == name.size()) {
        name.resize(2 * name.size());
    }
    return name.c_str();
}

bool is_error_stream_a_terminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

bool has_dialogs() {
    return true;
}

void prepare_console() {
    SetConsoleOutputCP(CP_UTF8);
}

} // namespace host
