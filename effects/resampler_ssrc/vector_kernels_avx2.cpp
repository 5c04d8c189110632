// Compiled for AVX2. What it includes must leave no function behind that another file could share: templates on the
// vector's type and the compiler's own intrinsics do not.
#include "effects/resampler_ssrc/four_avx2.h"
#include "effects/resampler_ssrc/kernels_of.h"

namespace kelvane::ssrc {

const vector_kernels& avx2_kernels() noexcept {
    static constexpr vector_kernels kernels = kernels_of<four_avx2>("AVX2");
    return kernels;
}

} // namespace kelvane::ssrc
