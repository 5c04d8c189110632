// Streams that take turns.
#pragma once

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class interleave_kernels {
public:
    static void interleave(const double* const* from, std::size_t streams, double* to, std::size_t values) {
        switch (streams) {
        case 2:
            return of_two(from[0], from[1], to, values);
        case 3:
            return of_three(from[0], from[1], from[2], to, values);
        default:
            return copy(from[0], to, values);
        }
    }

    static void deinterleave(const double* from, double* const* to, std::size_t streams, std::size_t values) {
        switch (streams) {
        case 2:
            return to_two(from, to[0], to[1], values);
        case 3:
            return to_three(from, to[0], to[1], to[2], values);
        default:
            return copy(from, to[0], values);
        }
    }

private:
    static void copy(const double* from, double* to, std::size_t values) {
        for (std::size_t i = 0; i < values; i += 4) {
            Four::load(from + i).store(to + i);
        }
    }

    static void of_two(const double* from0, const double* from1, double* to, std::size_t values) {
        for (std::size_t i = 0; i < values; i += 4) {
            const Four a = Four::load(from0 + i);
            const Four b = Four::load(from1 + i);
            low_halves(even_lanes(a, b), odd_lanes(a, b)).store(to + 2 * i);
            high_halves(even_lanes(a, b), odd_lanes(a, b)).store(to + 2 * i + 4);
        }
    }

    static void of_three(const double* from0, const double* from1, const double* from2, double* to,
                         std::size_t values) {
        for (std::size_t i = 0; i < values; i += 4) {
            const Four a = Four::load(from0 + i);
            const Four b = Four::load(from1 + i);
            const Four c = Four::load(from2 + i);
            const Four ab = even_lanes(a, b);      // a0 b0 a2 b2
            const Four ca = alternate_lanes(c, a); // c0 a1 c2 a3
            const Four bc = odd_lanes(b, c);       // b1 c1 b3 c3
            low_halves(ab, ca).store(to + 3 * i);
            outer_halves(bc, ab).store(to + 3 * i + 4);
            high_halves(ca, bc).store(to + 3 * i + 8);
        }
    }

    static void to_two(const double* from, double* to0, double* to1, std::size_t values) {
        for (std::size_t i = 0; i < values; i += 4) {
            const Four first = Four::load(from + 2 * i);      // a0 b0 a1 b1
            const Four second = Four::load(from + 2 * i + 4); // a2 b2 a3 b3
            const Four low = low_halves(first, second);       // a0 b0 a2 b2
            const Four high = high_halves(first, second);     // a1 b1 a3 b3
            even_lanes(low, high).store(to0 + i);
            odd_lanes(low, high).store(to1 + i);
        }
    }

    static void to_three(const double* from, double* to0, double* to1, double* to2, std::size_t values) {
        for (std::size_t i = 0; i < values; i += 4) {
            const Four first = Four::load(from + 3 * i);      // a0 b0 c0 a1
            const Four second = Four::load(from + 3 * i + 4); // b1 c1 a2 b2
            const Four third = Four::load(from + 3 * i + 8);  // c2 a3 b3 c3
            const Four ab = outer_halves(first, second);      // a0 b0 a2 b2
            const Four ca = inner_halves(first, third);       // c0 a1 c2 a3
            const Four bc = outer_halves(second, third);      // b1 c1 b3 c3
            alternate_lanes(ab, ca).store(to0 + i);
            crossed_lanes(ab, bc).store(to1 + i);
            alternate_lanes(ca, bc).store(to2 + i);
        }
    }
};

} // namespace kelvane::ssrc
