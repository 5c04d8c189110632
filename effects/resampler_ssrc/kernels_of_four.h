// The table of inner loops for a type of vector.
#pragma once

#include "effects/resampler_ssrc/polyphase_of_four.h"
#include "effects/resampler_ssrc/transform_of_four.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
void multiply(double* to, const double* a, const double* b, std::size_t points) {
    using complex = complex_of_four<Four>;
    for (std::size_t i = 0; i < 2 * points; i += 8) {
        (complex::load(a + i) * complex::load(b + i)).store(to + i);
    }
}

template <class Four>
void multiply_add(double* to, const double* a, const double* b, std::size_t points) {
    using complex = complex_of_four<Four>;
    for (std::size_t i = 0; i < 2 * points; i += 8) {
        (complex::load(to + i) + complex::load(a + i) * complex::load(b + i)).store(to + i);
    }
}

template <class Four>
constexpr vector_kernels kernels_of(const char* name) {
    using transform = transform_of_four<Four>;
    return {name,           transform::forward, transform::backward,         transform::backward_im,
            multiply<Four>, multiply_add<Four>, polyphase_of_four<Four>::run};
}

} // namespace kelvane::ssrc
