// The one place for what the language does not have and each compiler spells its own way.
#pragma once

#ifndef __GNUC__
#error "processor_has_avx2 needs __builtin_cpu_supports, which GCC and Clang have"
#endif

#ifdef _WIN32
/// The export list (kelvane.def) names what the library shows.
#define KELVANE_EXPORT
#else
/// Makes a symbol visible to the version script (kelvane.map), which picks what the library shows.
#define KELVANE_EXPORT __attribute__((visibility("default")))
#endif

namespace kelvane {

/// Whether the processor has vectors of four doubles with AVX2's instructions, and the system saves them.
inline bool processor_has_avx2() noexcept {
    return static_cast<bool>(__builtin_cpu_supports("avx2"));
}

} // namespace kelvane
