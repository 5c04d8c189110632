// Four doubles as one vector of AVX2. Only for files compiled for it.
#pragma once

#include <cstddef>

#include <immintrin.h>

namespace kelvane::ssrc {

struct four_avx2 {
    /// What a pass works on at a time.
    using part = four_avx2;
    static constexpr std::size_t lanes = 4;

    __m256d values;

    static four_avx2 load(const double* from) { return {_mm256_loadu_pd(from)}; }
    static four_avx2 all(double value) { return {_mm256_set1_pd(value)}; }
    void store(double* to) const { _mm256_storeu_pd(to, values); }
    double first() const { return _mm256_cvtsd_f64(values); }

    friend four_avx2 operator+(four_avx2 a, four_avx2 b) { return {_mm256_add_pd(a.values, b.values)}; }
    friend four_avx2 operator-(four_avx2 a, four_avx2 b) { return {_mm256_sub_pd(a.values, b.values)}; }
    friend four_avx2 operator*(four_avx2 a, four_avx2 b) { return {_mm256_mul_pd(a.values, b.values)}; }

    /// a0 b0 a2 b2
    friend four_avx2 even_lanes(four_avx2 a, four_avx2 b) { return {_mm256_unpacklo_pd(a.values, b.values)}; }
    /// a1 b1 a3 b3
    friend four_avx2 odd_lanes(four_avx2 a, four_avx2 b) { return {_mm256_unpackhi_pd(a.values, b.values)}; }
    /// a1 b0 a3 b2
    friend four_avx2 crossed_lanes(four_avx2 a, four_avx2 b) { return {_mm256_shuffle_pd(a.values, b.values, 0b0101)}; }
    /// a0 b1 a2 b3
    friend four_avx2 alternate_lanes(four_avx2 a, four_avx2 b) { return {_mm256_blend_pd(a.values, b.values, 0b1010)}; }
    /// a0 a1 b0 b1
    friend four_avx2 low_halves(four_avx2 a, four_avx2 b) { return {_mm256_permute2f128_pd(a.values, b.values, 0x20)}; }
    /// a2 a3 b2 b3
    friend four_avx2 high_halves(four_avx2 a, four_avx2 b) {
        return {_mm256_permute2f128_pd(a.values, b.values, 0x31)};
    }
    /// a2 a3 b0 b1
    friend four_avx2 inner_halves(four_avx2 a, four_avx2 b) {
        return {_mm256_permute2f128_pd(a.values, b.values, 0x21)};
    }
    /// a0 a1 b2 b3
    friend four_avx2 outer_halves(four_avx2 a, four_avx2 b) { return {_mm256_blend_pd(a.values, b.values, 0b1100)}; }
};

} // namespace kelvane::ssrc
