// Four doubles as two vectors of SSE2, which every 64-bit processor of this family has.
#pragma once

#include <cstddef>

#include <emmintrin.h>

namespace kelvane::ssrc {

struct two_sse2 {
    static constexpr std::size_t lanes = 2;

    __m128d values;

    static two_sse2 load(const double* from) { return {_mm_loadu_pd(from)}; }
    static two_sse2 all(double value) { return {_mm_set1_pd(value)}; }
    void store(double* to) const { _mm_storeu_pd(to, values); }

    friend two_sse2 operator+(two_sse2 a, two_sse2 b) { return {_mm_add_pd(a.values, b.values)}; }
    friend two_sse2 operator-(two_sse2 a, two_sse2 b) { return {_mm_sub_pd(a.values, b.values)}; }
    friend two_sse2 operator*(two_sse2 a, two_sse2 b) { return {_mm_mul_pd(a.values, b.values)}; }

    /// a0 b0
    friend two_sse2 even_lanes(two_sse2 a, two_sse2 b) { return {_mm_unpacklo_pd(a.values, b.values)}; }
    /// a1 b1
    friend two_sse2 odd_lanes(two_sse2 a, two_sse2 b) { return {_mm_unpackhi_pd(a.values, b.values)}; }
    /// a1 b0
    friend two_sse2 crossed_lanes(two_sse2 a, two_sse2 b) { return {_mm_shuffle_pd(a.values, b.values, 0b01)}; }
    /// a0 b1
    friend two_sse2 alternate_lanes(two_sse2 a, two_sse2 b) { return {_mm_shuffle_pd(a.values, b.values, 0b10)}; }
};

struct four_sse2 {
    /// What a pass works on at a time: both halves at once would not fit the registers.
    using part = two_sse2;

    two_sse2 low;
    two_sse2 high;

    static four_sse2 load(const double* from) { return {two_sse2::load(from), two_sse2::load(from + 2)}; }
    static four_sse2 all(double value) { return {two_sse2::all(value), two_sse2::all(value)}; }
    void store(double* to) const {
        low.store(to);
        high.store(to + 2);
    }
    double first() const { return _mm_cvtsd_f64(low.values); }

    friend four_sse2 operator+(four_sse2 a, four_sse2 b) { return {a.low + b.low, a.high + b.high}; }
    friend four_sse2 operator*(four_sse2 a, four_sse2 b) { return {a.low * b.low, a.high * b.high}; }

    /// a0 b0 a2 b2
    friend four_sse2 even_lanes(four_sse2 a, four_sse2 b) {
        return {even_lanes(a.low, b.low), even_lanes(a.high, b.high)};
    }
    /// a1 b1 a3 b3
    friend four_sse2 odd_lanes(four_sse2 a, four_sse2 b) {
        return {odd_lanes(a.low, b.low), odd_lanes(a.high, b.high)};
    }
    /// a1 b0 a3 b2
    friend four_sse2 crossed_lanes(four_sse2 a, four_sse2 b) {
        return {crossed_lanes(a.low, b.low), crossed_lanes(a.high, b.high)};
    }
    /// a0 b1 a2 b3
    friend four_sse2 alternate_lanes(four_sse2 a, four_sse2 b) {
        return {alternate_lanes(a.low, b.low), alternate_lanes(a.high, b.high)};
    }
    /// a0 a1 b0 b1
    friend four_sse2 low_halves(four_sse2 a, four_sse2 b) { return {a.low, b.low}; }
    /// a2 a3 b2 b3
    friend four_sse2 high_halves(four_sse2 a, four_sse2 b) { return {a.high, b.high}; }
    /// a2 a3 b0 b1
    friend four_sse2 inner_halves(four_sse2 a, four_sse2 b) { return {a.high, b.low}; }
    /// a0 a1 b2 b3
    friend four_sse2 outer_halves(four_sse2 a, four_sse2 b) { return {a.low, b.high}; }
};

} // namespace kelvane::ssrc
