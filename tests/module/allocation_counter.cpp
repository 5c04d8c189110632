// The C library lets a program put its own allocator in front of it; the module's calls come here too, because the
// program's symbols are looked up first.
#include "tests/module/allocation_counter.h"

#include "frame/compiler.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

std::atomic<std::uint64_t> counted = 0;

void count() noexcept {
    counted.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

extern "C" {

KELVANE_EXPORT void* malloc(std::size_t bytes) {
    count();
    return __libc_malloc(bytes);
}

KELVANE_EXPORT void* calloc(std::size_t items, std::size_t bytes) {
    count();
    return __libc_calloc(items, bytes);
}

KELVANE_EXPORT void* realloc(void* memory, std::size_t bytes) {
    count();
    return __libc_realloc(memory, bytes);
}

KELVANE_EXPORT void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    count();
    return __libc_memalign(alignment, bytes);
}

KELVANE_EXPORT void* memalign(std::size_t alignment, std::size_t bytes) {
    return aligned_alloc(alignment, bytes);
}

KELVANE_EXPORT int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
    *memory = aligned_alloc(alignment, bytes);
    return *memory == nullptr ? ENOMEM : 0;
}

} // extern "C"

namespace testing_support {

std::uint64_t allocations() noexcept {
    return counted.load(std::memory_order_relaxed);
}

} // namespace testing_support
