#include "host/platform/shared_library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace host {

shared_library::shared_library(const std::filesystem::path& file)
    // An absolute path: a bare name would be looked for in the system's folders.
    : handle_(dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) {
        throw std::runtime_error(dlerror());
    }
}

void* shared_library::find(const std::string& name) const {
    return dlsym(handle_.get(), name.c_str());
}

void shared_library::closing::operator()(void* handle) const noexcept {
    dlclose(handle);
}

} // namespace host
