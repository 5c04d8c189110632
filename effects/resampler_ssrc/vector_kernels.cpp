#include "effects/resampler_ssrc/vector_kernels.h"

#include "frame/compiler.h"

namespace kelvane::ssrc {

const vector_kernels& best_kernels() noexcept {
    static const vector_kernels& best = processor_has_avx2() ? avx2_kernels() : sse2_kernels();
    return best;
}

} // namespace kelvane::ssrc
