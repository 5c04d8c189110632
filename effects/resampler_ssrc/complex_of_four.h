// Four complex numbers at once, and the butterflies on them. `Four` is a vector of four doubles (four_sse2.h).
#pragma once

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
struct complex_of_four {
    Four re;
    Four im;

    static complex_of_four load(const double* block) { return {Four::load(block), Four::load(block + 4)}; }
    /// The same number in all lanes.
    static complex_of_four all(const double* pair) { return {Four::all(pair[0]), Four::all(pair[1])}; }
    void store(double* block) const {
        re.store(block);
        im.store(block + 4);
    }

    friend complex_of_four operator+(complex_of_four a, complex_of_four b) { return {a.re + b.re, a.im + b.im}; }
    friend complex_of_four operator-(complex_of_four a, complex_of_four b) { return {a.re - b.re, a.im - b.im}; }
    friend complex_of_four operator*(complex_of_four a, complex_of_four b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
    /// a x conjugate of b
    friend complex_of_four turned_back(complex_of_four a, complex_of_four b) {
        return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
    }
    friend complex_of_four plus_i_times(complex_of_four a, complex_of_four b) { return {a.re - b.im, a.im + b.re}; }
    friend complex_of_four minus_i_times(complex_of_four a, complex_of_four b) { return {a.re + b.im, a.im - b.re}; }
};

/// A node of the tree with four children: w, w^2 and w^3, where w is the first child's root.
template <class Four>
struct node_of_four {
    complex_of_four<Four> w1;
    complex_of_four<Four> w2;
    complex_of_four<Four> w3;

    /// One node for all lanes.
    static node_of_four all(const double* numbers) {
        using complex = complex_of_four<Four>;
        return {complex::all(numbers), complex::all(numbers + 2), complex::all(numbers + 4)};
    }
    /// A node of its own for each lane.
    static node_of_four each(const double* numbers) {
        using complex = complex_of_four<Four>;
        return {complex::load(numbers), complex::load(numbers + 8), complex::load(numbers + 16)};
    }
};

/// The four quarters of a node: before the split a polynomial's, after it those of the children.
template <class Four>
struct quarters {
    complex_of_four<Four> q0;
    complex_of_four<Four> q1;
    complex_of_four<Four> q2;
    complex_of_four<Four> q3;

    /// Four blocks, `step` numbers apart.
    static quarters load(const double* first, std::size_t step) {
        using complex = complex_of_four<Four>;
        return {complex::load(first), complex::load(first + step), complex::load(first + 2 * step),
                complex::load(first + 3 * step)};
    }
    void store(double* first, std::size_t step) const {
        q0.store(first);
        q1.store(first + step);
        q2.store(first + 2 * step);
        q3.store(first + 3 * step);
    }
};

/// Child k is q0 + q1 (w i^k) + q2 (w i^k)^2 + q3 (w i^k)^3.
template <class Four>
inline quarters<Four> split(const quarters<Four>& node, const node_of_four<Four>& roots) {
    const auto b1 = node.q1 * roots.w1;
    const auto b2 = node.q2 * roots.w2;
    const auto b3 = node.q3 * roots.w3;
    const auto even_sum = node.q0 + b2;
    const auto even_difference = node.q0 - b2;
    const auto odd_sum = b1 + b3;
    const auto odd_difference = b1 - b3;
    return {even_sum + odd_sum, plus_i_times(even_difference, odd_difference), even_sum - odd_sum,
            minus_i_times(even_difference, odd_difference)};
}

/// The inverse of the split without its last products: four times q0, w q1, w^2 q2, w^3 q3.
template <class Four>
inline quarters<Four> join_unturned(const quarters<Four>& children) {
    const auto even_sum = children.q0 + children.q2;
    const auto even_difference = children.q0 - children.q2;
    const auto odd_sum = children.q1 + children.q3;
    const auto odd_difference = children.q1 - children.q3;
    return {even_sum + odd_sum, minus_i_times(even_difference, odd_difference), even_sum - odd_sum,
            plus_i_times(even_difference, odd_difference)};
}

/// Four times the inverse of the split.
template <class Four>
inline quarters<Four> join(const quarters<Four>& children, const node_of_four<Four>& roots) {
    const quarters<Four> sums = join_unturned(children);
    return {sums.q0, turned_back(sums.q1, roots.w1), turned_back(sums.q2, roots.w2), turned_back(sums.q3, roots.w3)};
}

/// Lane j of vector i becomes lane i of vector j.
template <class Four>
inline void transpose(Four& v0, Four& v1, Four& v2, Four& v3) {
    const Four even01 = even_lanes(v0, v1);
    const Four odd01 = odd_lanes(v0, v1);
    const Four even23 = even_lanes(v2, v3);
    const Four odd23 = odd_lanes(v2, v3);
    v0 = low_halves(even01, even23);
    v1 = low_halves(odd01, odd23);
    v2 = high_halves(even01, even23);
    v3 = high_halves(odd01, odd23);
}

template <class Four>
inline quarters<Four> transposed(quarters<Four> q) {
    transpose(q.q0.re, q.q1.re, q.q2.re, q.q3.re);
    transpose(q.q0.im, q.q1.im, q.q2.im, q.q3.im);
    return q;
}

} // namespace kelvane::ssrc
