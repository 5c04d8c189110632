// Counts the memory that this program's `new` hands out, and has it fail on request.
#pragma once

#include <cstddef>
#include <cstdint>

namespace testing_support {

/// Since the program's start.
std::uint64_t allocations() noexcept;

/// Blocks handed out and not given back.
std::int64_t blocks_in_use() noexcept;

/// The most that was asked for at once since the last call of `forget_largest_request`, whether it was had or not.
std::size_t largest_request_bytes() noexcept;
void forget_largest_request() noexcept;

/// While one lives, `new (std::nothrow)` hands out so many blocks more and no other.
class allocation_limit {
public:
    explicit allocation_limit(std::int64_t blocks) noexcept;
    ~allocation_limit();
    allocation_limit(const allocation_limit&) = delete;
    allocation_limit& operator=(const allocation_limit&) = delete;
};

} // namespace testing_support
