// Notices on the host's console.
#pragma once

namespace kelvane {

/// Prints one line, formatted as printf does it. Nothing without a host API. May throw a bad allocation;
/// what the host's own calls throw passes through.
void print_notice(const char* format, ...);

} // namespace kelvane
