// Four doubles at once, as one vector of AVX2. Only for files compiled for it.
#pragma once

#include <immintrin.h>

namespace kelvane::ssrc {

struct four_avx2 {
    __m256d lanes;

    static four_avx2 load(const double* from) { return {_mm256_loadu_pd(from)}; }
    static four_avx2 all(double value) { return {_mm256_set1_pd(value)}; }
    static four_avx2 zero() { return {_mm256_setzero_pd()}; }
    void store(double* to) const { _mm256_storeu_pd(to, lanes); }
    double first() const { return _mm256_cvtsd_f64(lanes); }

    friend four_avx2 operator+(four_avx2 a, four_avx2 b) { return {_mm256_add_pd(a.lanes, b.lanes)}; }
    friend four_avx2 operator-(four_avx2 a, four_avx2 b) { return {_mm256_sub_pd(a.lanes, b.lanes)}; }
    friend four_avx2 operator*(four_avx2 a, four_avx2 b) { return {_mm256_mul_pd(a.lanes, b.lanes)}; }

    /// a0 b0 a2 b2
    friend four_avx2 even_lanes(four_avx2 a, four_avx2 b) { return {_mm256_unpacklo_pd(a.lanes, b.lanes)}; }
    /// a1 b1 a3 b3
    friend four_avx2 odd_lanes(four_avx2 a, four_avx2 b) { return {_mm256_unpackhi_pd(a.lanes, b.lanes)}; }
    /// a0 a1 b0 b1
    friend four_avx2 low_halves(four_avx2 a, four_avx2 b) { return {_mm256_permute2f128_pd(a.lanes, b.lanes, 0x20)}; }
    /// a2 a3 b2 b3
    friend four_avx2 high_halves(four_avx2 a, four_avx2 b) { return {_mm256_permute2f128_pd(a.lanes, b.lanes, 0x31)}; }
};

} // namespace kelvane::ssrc
