// The one place for what the language does not have and each compiler spells its own way.
#pragma once

#ifdef _MSC_VER
#include <immintrin.h>
#include <intrin.h>
#elif !defined(__GNUC__)
#error "processor_has_avx2 has to be written for this compiler"
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
#ifdef _MSC_VER
    enum { eax, ebx, ecx, edx };
    int highest_leaf[4] = {}, features[4] = {}, extended_features[4] = {};
    __cpuid(highest_leaf, 0);
    if (highest_leaf[eax] < 7) {
        return false;
    }
    __cpuid(features, 1);
    __cpuidex(extended_features, 7, 0);
    const bool can_be_asked_what_is_saved = (features[ecx] & (1 << 27)) != 0;
    constexpr unsigned saves_both_halves = 0b110;
    return can_be_asked_what_is_saved && (_xgetbv(0) & saves_both_halves) == saves_both_halves &&
           (extended_features[ebx] & (1 << 5)) != 0;
#else
    return static_cast<bool>(__builtin_cpu_supports("avx2"));
#endif
}

} // namespace kelvane
