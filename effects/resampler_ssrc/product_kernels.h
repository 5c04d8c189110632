// Sums of products of spectra.
#pragma once

#include "effects/resampler_ssrc/complex_lanes.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

template <class Four>
class product_kernels {
public:
    static void multiply(const spectrum_products& products, double* to, std::size_t points) {
        for_count<false>(products, to, points);
    }
    static void multiply_add(const spectrum_products& products, double* to, std::size_t points) {
        for_count<true>(products, to, points);
    }

private:
    using complex = complex_lanes<typename Four::part>;

    template <bool Adds>
    static void for_count(const spectrum_products& products, double* to, std::size_t points) {
        switch (products.count) {
        case 1:
            return run<Adds, 1>(products, to, points);
        case 2:
            return run<Adds, 2>(products, to, points);
        default:
            return run<Adds, 3>(products, to, points);
        }
    }

    template <bool Adds, std::size_t Count>
    static void run(const spectrum_products& products, double* to, std::size_t points) {
        for (std::size_t block = 0; block < 2 * points; block += 8) {
            for (std::size_t at = block; at < block + 4; at += Four::part::lanes) {
                complex sum = complex::load(products.signals[0] + at) * complex::load(products.filters[0] + at);
                for (std::size_t i = 1; i < Count; ++i) {
                    sum = sum + complex::load(products.signals[i] + at) * complex::load(products.filters[i] + at);
                }
                (Adds ? complex::load(to + at) + sum : sum).store(to + at);
            }
        }
    }
};

} // namespace kelvane::ssrc
