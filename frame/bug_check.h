// The end of the process after a fault that cannot be.
#pragma once

#include <string_view>

namespace kelvane {

/// Logs "VELMORA_BugCheck: " and `fault` through the host's utility library and lets it stop the process.
[[noreturn]] void bug_check(std::string_view fault) noexcept;

} // namespace kelvane
