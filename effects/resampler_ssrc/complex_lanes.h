// Some complex numbers at once, and the butterflies on them. `Part` is a vector of two or four doubles (four_sse2.h).
// In memory four real parts are followed by their four imaginary parts.
#pragma once

#include <cstddef>

namespace kelvane::ssrc {

template <class Part>
struct complex_lanes {
    Part re;
    Part im;

    static complex_lanes load(const double* block) { return {Part::load(block), Part::load(block + 4)}; }
    /// The same number in all lanes.
    static complex_lanes all(const double* pair) { return {Part::all(pair[0]), Part::all(pair[1])}; }
    void store(double* block) const {
        re.store(block);
        im.store(block + 4);
    }

    friend complex_lanes operator+(complex_lanes a, complex_lanes b) { return {a.re + b.re, a.im + b.im}; }
    friend complex_lanes operator-(complex_lanes a, complex_lanes b) { return {a.re - b.re, a.im - b.im}; }
    friend complex_lanes operator*(complex_lanes a, complex_lanes b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
    /// a x conjugate of b
    friend complex_lanes times_conjugate(complex_lanes a, complex_lanes b) {
        return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
    }
    friend complex_lanes plus_i_times(complex_lanes a, complex_lanes b) { return {a.re - b.im, a.im + b.re}; }
    friend complex_lanes minus_i_times(complex_lanes a, complex_lanes b) { return {a.re + b.im, a.im - b.re}; }
};

/// A node of the tree with four children: w, w^2 and w^3, where w is the first child's root.
template <class Part>
struct node_lanes {
    complex_lanes<Part> w1;
    complex_lanes<Part> w2;
    complex_lanes<Part> w3;

    /// One node for all lanes.
    static node_lanes all(const double* numbers) {
        using complex = complex_lanes<Part>;
        return {complex::all(numbers), complex::all(numbers + 2), complex::all(numbers + 4)};
    }
    /// A node of its own for each lane.
    static node_lanes each(const double* numbers) {
        using complex = complex_lanes<Part>;
        return {complex::load(numbers), complex::load(numbers + 8), complex::load(numbers + 16)};
    }
};

/// Lanes of the four quarters of a node: before the split a polynomial's, after it those of the children.
template <class Part>
struct quarters {
    complex_lanes<Part> q0;
    complex_lanes<Part> q1;
    complex_lanes<Part> q2;
    complex_lanes<Part> q3;

    /// Part blocks, `step` numbers apart.
    static quarters load(const double* first, std::size_t step) {
        using complex = complex_lanes<Part>;
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

/// What four numbers make before the last step of a butterfly.
template <class Part>
struct butterfly {
    complex_lanes<Part> even_sum;
    complex_lanes<Part> even_difference;
    complex_lanes<Part> odd_sum;
    complex_lanes<Part> odd_difference;

    butterfly(const complex_lanes<Part>& b0, const complex_lanes<Part>& b1, const complex_lanes<Part>& b2,
              const complex_lanes<Part>& b3)
        : even_sum(b0 + b2), even_difference(b0 - b2), odd_sum(b1 + b3), odd_difference(b1 - b3) {}
};

/// Child k is q0 + q1 (w i^k) + q2 (w i^k)^2 + q3 (w i^k)^3.
template <class Part>
inline quarters<Part> split(const quarters<Part>& node, const node_lanes<Part>& roots) {
    const butterfly<Part> b(node.q0, node.q1 * roots.w1, node.q2 * roots.w2, node.q3 * roots.w3);
    return {b.even_sum + b.odd_sum, plus_i_times(b.even_difference, b.odd_difference), b.even_sum - b.odd_sum,
            minus_i_times(b.even_difference, b.odd_difference)};
}

/// The inverse of the split without its last products: four times q0, w q1, w^2 q2, w^3 q3.
template <class Part>
inline quarters<Part> join_unturned(const quarters<Part>& children) {
    const butterfly<Part> b(children.q0, children.q1, children.q2, children.q3);
    return {b.even_sum + b.odd_sum, minus_i_times(b.even_difference, b.odd_difference), b.even_sum - b.odd_sum,
            plus_i_times(b.even_difference, b.odd_difference)};
}

/// Four times the inverse of the split. Not written on the former: the compiler would take the copies through memory.
template <class Part>
inline quarters<Part> join(const quarters<Part>& children, const node_lanes<Part>& roots) {
    const butterfly<Part> b(children.q0, children.q1, children.q2, children.q3);
    return {b.even_sum + b.odd_sum, times_conjugate(minus_i_times(b.even_difference, b.odd_difference), roots.w1),
            times_conjugate(b.even_sum - b.odd_sum, roots.w2),
            times_conjugate(plus_i_times(b.even_difference, b.odd_difference), roots.w3)};
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

template <class Part>
inline complex_lanes<Part> even_lanes(complex_lanes<Part> a, complex_lanes<Part> b) {
    return {even_lanes(a.re, b.re), even_lanes(a.im, b.im)};
}

template <class Part>
inline complex_lanes<Part> odd_lanes(complex_lanes<Part> a, complex_lanes<Part> b) {
    return {odd_lanes(a.re, b.re), odd_lanes(a.im, b.im)};
}

/// Quarters of four lanes, in one part or in two, transposed: part `index` of the result.
template <class Part>
inline quarters<Part> turned(const quarters<Part>* parts, std::size_t index) {
    if constexpr (Part::lanes == 4) {
        quarters<Part> whole = parts[0];
        transpose(whole.q0.re, whole.q1.re, whole.q2.re, whole.q3.re);
        transpose(whole.q0.im, whole.q1.im, whole.q2.im, whole.q3.im);
        return whole;
    } else {
        const auto low_a = index == 0 ? parts[0].q0 : parts[0].q2;
        const auto low_b = index == 0 ? parts[0].q1 : parts[0].q3;
        const auto high_a = index == 0 ? parts[1].q0 : parts[1].q2;
        const auto high_b = index == 0 ? parts[1].q1 : parts[1].q3;
        return {even_lanes(low_a, low_b), odd_lanes(low_a, low_b), even_lanes(high_a, high_b),
                odd_lanes(high_a, high_b)};
    }
}

} // namespace kelvane::ssrc
