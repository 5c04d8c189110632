// What the host told the module about itself.
#pragma once

#include <string>

namespace velmora {
class host_api;
}

namespace kelvane {

/// Written by the host's calls to the module's interface, on its main thread; read everywhere.
struct module_state {
    velmora::host_api* host = nullptr; ///< borrowed from the host, which outlives the module; may be null
    bool checks_threads = false;       ///< whether dialogs insist on the main thread
    std::string path;                  ///< where the module lies, UTF-8
    std::string file_name;             ///< its file name as the host shows it, UTF-8
};

/// The module's one state.
module_state& state() noexcept;

} // namespace kelvane
