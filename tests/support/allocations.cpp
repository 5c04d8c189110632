#include "tests/support/allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>

namespace {

constexpr std::int64_t no_limit = std::numeric_limits<std::int64_t>::max();

std::atomic<std::uint64_t> handed_out = 0;
std::atomic<std::int64_t> in_use = 0;
std::atomic<std::int64_t> left = no_limit;
std::atomic<std::size_t> largest_bytes = 0;

void note_request(std::size_t bytes) noexcept {
    for (std::size_t seen = largest_bytes; bytes > seen && !largest_bytes.compare_exchange_weak(seen, bytes);) {
    }
}

void* counted(void* memory) noexcept {
    if (memory != nullptr) {
        ++handed_out;
        ++in_use;
    }
    return memory;
}

void give_back(void* memory) noexcept {
    if (memory != nullptr) {
        --in_use;
        std::free(memory);
    }
}

void* plain(std::size_t bytes) noexcept {
    return counted(std::malloc(bytes == 0 ? 1 : bytes));
}

/// Room for the way back to what the system gave lies in front of the aligned block.
void* aligned(std::size_t bytes, std::size_t alignment) noexcept {
    void* whole = std::malloc(bytes + alignment + sizeof(void*));
    if (whole == nullptr) {
        return nullptr;
    }
    void* block = static_cast<std::byte*>(whole) + sizeof(void*);
    std::size_t room_bytes = bytes + alignment;
    std::align(alignment, bytes, block, room_bytes);
    static_cast<void**>(block)[-1] = whole;
    return counted(block);
}

void give_back_aligned(void* block) noexcept {
    if (block != nullptr) {
        give_back(static_cast<void**>(block)[-1]);
    }
}

/// Whether the limit, or sense, forbids the block.
bool is_refused(std::size_t bytes) noexcept {
    if (left <= 0) {
        return true;
    }
    if (left != no_limit) {
        --left;
    }
    return bytes > std::numeric_limits<std::size_t>::max() / 2;
}

void* or_throw(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

void* operator new(std::size_t bytes) {
    note_request(bytes);
    return or_throw(plain(bytes));
}

void* operator new(std::size_t bytes, std::align_val_t alignment) {
    note_request(bytes);
    return or_throw(aligned(bytes, static_cast<std::size_t>(alignment)));
}

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    note_request(bytes);
    return is_refused(bytes) ? nullptr : plain(bytes);
}

void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    note_request(bytes);
    return is_refused(bytes) ? nullptr : aligned(bytes, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept {
    give_back(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    give_back(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    give_back(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    give_back_aligned(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    give_back_aligned(memory);
}

void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back_aligned(memory);
}

namespace testing_support {

std::uint64_t allocations() noexcept {
    return handed_out;
}

std::int64_t blocks_in_use() noexcept {
    return in_use;
}

std::size_t largest_request_bytes() noexcept {
    return largest_bytes;
}

void forget_largest_request() noexcept {
    largest_bytes = 0;
}

allocation_limit::allocation_limit(std::int64_t blocks) noexcept {
    left = blocks;
}

allocation_limit::~allocation_limit() {
    left = no_limit;
}

} // namespace testing_support
