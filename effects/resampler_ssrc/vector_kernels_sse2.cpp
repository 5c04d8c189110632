#include "effects/resampler_ssrc/four_sse2.h"
#include "effects/resampler_ssrc/kernels_of.h"

namespace kelvane::ssrc {

const vector_kernels& sse2_kernels() noexcept {
    static constexpr vector_kernels kernels = kernels_of<four_sse2>("SSE2");
    return kernels;
}

} // namespace kelvane::ssrc
