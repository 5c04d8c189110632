// The table of inner loops for a type of vector.
#pragma once

#include "effects/resampler_ssrc/convolution_kernels.h"
#include "effects/resampler_ssrc/interleave_kernels.h"
#include "effects/resampler_ssrc/polyphase_kernels.h"
#include "effects/resampler_ssrc/transform_kernels.h"
#include "effects/resampler_ssrc/vector_kernels.h"

namespace kelvane::ssrc {

template <class Four>
constexpr vector_kernels kernels_of(const char* name) {
    using transform = transform_kernels<Four>;
    using interleave = interleave_kernels<Four>;
    using polyphase = polyphase_kernels<Four>;
    return {name,
            transform::forward,
            transform::backward,
            convolution_kernels<Four>::run,
            interleave::interleave,
            interleave::deinterleave,
            polyphase::run,
            polyphase::run_by_four};
}

} // namespace kelvane::ssrc
