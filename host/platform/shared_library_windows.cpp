#include "host/platform/shared_library.h"

#include <windows.h>

#include <stdexcept>
#include <system_error>

namespace host {

namespace {

/// The system's loader takes backslashes only.
std::filesystem::path whole_path(const std::filesystem::path& file) {
    return std::filesystem::absolute(file).make_preferred();
}

} // namespace

shared_library::shared_library(const std::filesystem::path& file)
    // The library's own folder is searched first for what it needs.
    : handle_(LoadLibraryExW(whole_path(file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
    if (!handle_) {
        throw std::runtime_error(std::system_category().message(static_cast<int>(GetLastError())));
    }
}

void* shared_library::find(const std::string& name) const {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_.get()), name.c_str()));
}

void shared_library::closing::operator()(void* handle) const noexcept {
    FreeLibrary(static_cast<HMODULE>(handle));
}

} // namespace host
