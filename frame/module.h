// The object through which the host speaks with the module.
#pragma once

#include "velmora/module_interface.h"

namespace velmora {
class host_api;
}

namespace kelvane {

/// Keeps the host's API object, which may be null, and returns the module's static interface.
velmora::module_interface* enter_module(velmora::host_api* host) noexcept;

} // namespace kelvane
