// A module as the host has loaded it.
#pragma once

#include "host/platform/shared_library.h"
#include "velmora/module_interface.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

namespace host {

/// The file is no module, or one that this host cannot speak with; the text says which, and why.
class module_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Loads a module, tells it where it lies, and unloads it at the end. References to its services must be given back
/// before that.
class loaded_module {
public:
    /// `api` must outlive the module; null stands for a host without one. Throws `module_error`.
    loaded_module(const std::filesystem::path& file, velmora::host_api* api);

    velmora::module_interface& interface() const noexcept { return *interface_; }

    /// The records of the service list, in the list's order.
    std::vector<velmora::service_factory*> services() const;

private:
    shared_library library_;
    velmora::module_interface* interface_ = nullptr;
};

} // namespace host
