// How much memory the process really uses (Linux).
#pragma once

#include <cstddef>
#include <fstream>

namespace testing_support {

/// Pages in memory.
inline std::size_t resident_pages() {
    std::ifstream statm("/proc/self/statm");
    std::size_t whole = 0;
    std::size_t resident = 0;
    statm >> whole >> resident;
    return resident;
}

} // namespace testing_support
