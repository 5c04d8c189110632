// Two doubles that are computed together.
#pragma once

#include <emmintrin.h>

namespace kelvane {

/// A vector of SSE2, which every processor of the platform has. Each operation rounds as that of a single double does.
struct double_pair {
    __m128d lanes = _mm_setzero_pd();
};

/// Both lanes the same.
inline double_pair both(double value) noexcept {
    return {_mm_set1_pd(value)};
}

/// From any address that suits a double.
inline double_pair load_two(const double* from) noexcept {
    return {_mm_loadu_pd(from)};
}

/// Into the first lane; the second is 0.0.
inline double_pair load_one(const double* from) noexcept {
    return {_mm_load_sd(from)};
}

/// From two places.
inline double_pair load_apart(const double* first, const double* second) noexcept {
    return {_mm_loadh_pd(_mm_load_sd(first), second)};
}

inline void store_two(double* to, double_pair value) noexcept {
    _mm_storeu_pd(to, value.lanes);
}

inline void store_first(double* to, double_pair value) noexcept {
    _mm_store_sd(to, value.lanes);
}

inline double_pair operator+(double_pair a, double_pair b) noexcept {
    return {_mm_add_pd(a.lanes, b.lanes)};
}

inline double_pair operator*(double_pair a, double_pair b) noexcept {
    return {_mm_mul_pd(a.lanes, b.lanes)};
}

inline double_pair operator/(double_pair a, double_pair b) noexcept {
    return {_mm_div_pd(a.lanes, b.lanes)};
}

inline double_pair magnitude(double_pair a) noexcept {
    return {_mm_andnot_pd(_mm_set1_pd(-0.0), a.lanes)};
}

/// In each lane `a` where it is greater, else `b`: a lane of `a` that is not a number counts as nothing.
inline double_pair larger(double_pair a, double_pair b) noexcept {
    return {_mm_max_pd(a.lanes, b.lanes)};
}

/// In each lane `a` where it is less, else `b`.
inline double_pair smaller(double_pair a, double_pair b) noexcept {
    return {_mm_min_pd(a.lanes, b.lanes)};
}

/// In each lane `if_greater` where a > b, else `otherwise`.
inline double_pair choose_where_greater(double_pair a, double_pair b, double_pair if_greater,
                                        double_pair otherwise) noexcept {
    const __m128d is_greater = _mm_cmpgt_pd(a.lanes, b.lanes);
    return {_mm_or_pd(_mm_and_pd(is_greater, if_greater.lanes), _mm_andnot_pd(is_greater, otherwise.lanes))};
}

/// Whether a > b in any lane.
inline bool any_greater(double_pair a, double_pair b) noexcept {
    return _mm_movemask_pd(_mm_cmpgt_pd(a.lanes, b.lanes)) != 0;
}

/// Whether both lanes are equal; what is not a number equals nothing.
inline bool all_equal(double_pair a, double_pair b) noexcept {
    return _mm_movemask_pd(_mm_cmpeq_pd(a.lanes, b.lanes)) == 0b11;
}

} // namespace kelvane
