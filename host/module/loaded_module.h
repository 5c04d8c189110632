// A module as the host has loaded it.
#pragma once

#include "host/platform/shared_library.h"
#include "velmora/module_interface.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

/// The file is no module, or one that this host cannot speak with; the text says which, and why.
class module_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Calls into the module. What it throws becomes a `module_error` that names `asked`: the code of the module's own
/// exceptions goes with its library, and must not be needed after that.
template <class Call>
auto ask_module(const std::string& asked, Call call) {
    try {
        return call();
    } catch (const std::exception& failure) {
        throw module_error(asked + " failed: " + failure.what());
    }
}

/// Loads a module, tells it where it lies, and unloads it at the end. References to its services must be given back
/// before that.
class loaded_module {
public:
    /// `api` must outlive the module; null stands for a host without one. Throws `module_error`.
    loaded_module(const std::filesystem::path& file, velmora::host_api* api);

    velmora::module_interface& entry() const noexcept { return *interface_; }

    /// The records of the service list, in the list's order.
    std::vector<velmora::service_factory*> services() const;

private:
    shared_library library_;
    velmora::module_interface* interface_ = nullptr;
};

} // namespace host
