// Streams that take turns.
#pragma once

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class interleave_kernels {
public:
    static void run(const double* const* sources, std::size_t count, double* to, std::size_t values) {
        switch (count) {
        case 2:
            return of_two(sources[0], sources[1], to, values);
        case 3:
            return of_three(sources[0], sources[1], sources[2], to, values);
        default:
            return copy(sources[0], to, values);
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
};

} // namespace kelvane::ssrc
