// Counts every allocation of the process.
#pragma once

#include <cstdint>

namespace testing_support {

/// Calls of malloc, calloc, realloc and their like since the start, by whomever.
std::uint64_t allocations() noexcept;

} // namespace testing_support
