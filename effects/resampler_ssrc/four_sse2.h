// Four doubles at once, as two vectors of SSE2, which every 64-bit processor of this family has.
#pragma once

#include <emmintrin.h>

namespace kelvane::ssrc {

struct four_sse2 {
    __m128d low;
    __m128d high;

    static four_sse2 load(const double* from) { return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2)}; }
    static four_sse2 all(double value) { return {_mm_set1_pd(value), _mm_set1_pd(value)}; }
    static four_sse2 zero() { return {_mm_setzero_pd(), _mm_setzero_pd()}; }
    void store(double* to) const {
        _mm_storeu_pd(to, low);
        _mm_storeu_pd(to + 2, high);
    }
    double first() const { return _mm_cvtsd_f64(low); }

    friend four_sse2 operator+(four_sse2 a, four_sse2 b) {
        return {_mm_add_pd(a.low, b.low), _mm_add_pd(a.high, b.high)};
    }
    friend four_sse2 operator-(four_sse2 a, four_sse2 b) {
        return {_mm_sub_pd(a.low, b.low), _mm_sub_pd(a.high, b.high)};
    }
    friend four_sse2 operator*(four_sse2 a, four_sse2 b) {
        return {_mm_mul_pd(a.low, b.low), _mm_mul_pd(a.high, b.high)};
    }

    /// a0 b0 a2 b2
    friend four_sse2 even_lanes(four_sse2 a, four_sse2 b) {
        return {_mm_unpacklo_pd(a.low, b.low), _mm_unpacklo_pd(a.high, b.high)};
    }
    /// a1 b1 a3 b3
    friend four_sse2 odd_lanes(four_sse2 a, four_sse2 b) {
        return {_mm_unpackhi_pd(a.low, b.low), _mm_unpackhi_pd(a.high, b.high)};
    }
    /// a0 a1 b0 b1
    friend four_sse2 low_halves(four_sse2 a, four_sse2 b) { return {a.low, b.low}; }
    /// a2 a3 b2 b3
    friend four_sse2 high_halves(four_sse2 a, four_sse2 b) { return {a.high, b.high}; }
};

} // namespace kelvane::ssrc
