// The table of inner loops for a type of vector.
#pragma once

#include "effects/resampler_ssrc/polyphase_kernels.h"
#include "effects/resampler_ssrc/product_kernels.h"
#include "effects/resampler_ssrc/transform_kernels.h"
#include "effects/resampler_ssrc/vector_kernels.h"

namespace kelvane::ssrc {

template <class Four>
constexpr vector_kernels kernels_of(const char* name) {
    using transform = transform_kernels<Four>;
    using product = product_kernels<Four>;
    return {name,
            transform::forward,
            transform::backward,
            transform::backward_im,
            product::multiply,
            product::multiply_add,
            polyphase_kernels<Four>::run};
}

} // namespace kelvane::ssrc
