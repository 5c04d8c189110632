// Four floats that are computed together.
#pragma once

#include <emmintrin.h>

namespace kelvane {

/// A vector of SSE2, which every processor of the platform has. Each operation rounds as that of a single float does.
struct float_four {
    __m128 lanes = _mm_setzero_ps();
};

/// All four lanes the same.
inline float_four all_four(float value) noexcept {
    return {_mm_set1_ps(value)};
}

/// From any address that suits a float.
inline float_four load_four(const float* from) noexcept {
    return {_mm_loadu_ps(from)};
}

/// From a multiple of 16 bytes.
inline float_four load_four_aligned(const float* from) noexcept {
    return {_mm_load_ps(from)};
}

/// To any address that suits a float.
inline void store_four(float* to, float_four value) noexcept {
    _mm_storeu_ps(to, value.lanes);
}

inline float_four operator+(float_four a, float_four b) noexcept {
    return {_mm_add_ps(a.lanes, b.lanes)};
}

inline float_four operator*(float_four a, float_four b) noexcept {
    return {_mm_mul_ps(a.lanes, b.lanes)};
}

/// The first two lanes of `a`, then those of `b`.
inline float_four low_halves(float_four a, float_four b) noexcept {
    return {_mm_movelh_ps(a.lanes, b.lanes)};
}

/// The last two lanes of `a`, then those of `b`.
inline float_four high_halves(float_four a, float_four b) noexcept {
    return {_mm_movehl_ps(b.lanes, a.lanes)};
}

/// a0 b0 a1 b1.
inline float_four interleave_low(float_four a, float_four b) noexcept {
    return {_mm_unpacklo_ps(a.lanes, b.lanes)};
}

/// a2 b2 a3 b3.
inline float_four interleave_high(float_four a, float_four b) noexcept {
    return {_mm_unpackhi_ps(a.lanes, b.lanes)};
}

/// The first two lanes widened.
inline void store_low_doubles(double* to, float_four value) noexcept {
    _mm_storeu_pd(to, _mm_cvtps_pd(value.lanes));
}

/// The first lane widened.
inline void store_first_double(double* to, float_four value) noexcept {
    _mm_store_sd(to, _mm_cvtps_pd(value.lanes));
}

/// Two doubles rounded to float, in the first two lanes.
inline float_four round_two_doubles(const double* from) noexcept {
    return {_mm_cvtpd_ps(_mm_loadu_pd(from))};
}

} // namespace kelvane
