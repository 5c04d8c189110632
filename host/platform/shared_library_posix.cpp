#include "host/platform/shared_library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace host {

namespace {

/// The system puts the path in front of its reason. Who catches that knows the path.
std::string without_path(const std::string& reason, const std::filesystem::path& path) {
    const std::string prefix = path.string() + ": ";
    return reason.starts_with(prefix) ? reason.substr(prefix.size()) : reason;
}

} // namespace

shared_library::shared_library(const std::filesystem::path& file)
    // An absolute path: a bare name would be looked for in the system's folders.
    : handle_(dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) {
        throw std::runtime_error(without_path(dlerror(), std::filesystem::absolute(file)));
    }
}

void* shared_library::find(const std::string& name) const {
    return dlsym(handle_.get(), name.c_str());
}

void shared_library::closing::operator()(void* handle) const noexcept {
    dlclose(handle);
}

} // namespace host
