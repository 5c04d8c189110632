// A block of a partitioned convolution in one go, for some channels.
#pragma once

#include "effects/resampler_ssrc/complex_lanes.h"
#include "effects/resampler_ssrc/transform_kernels.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

/// Transforms there, products and transforms back share one walk of the tree: a node of all inputs' spectra is split
/// down to its leaves, multiplied and joined again while it is in the first level of the cache.
template <class Four>
class convolution_kernels {
public:
    static void run(const transform_tables& tables, const convolution* blocks, std::size_t count) {
        for_each_input(blocks, count, [&](const convolution& block, std::size_t input) {
            transform::open(tables, block.older[input], block.newer[input], block.spectra[input]);
        });
        const std::size_t children = tables.opens_with_two ? 2 : 4;
        for (std::size_t child = 0; child < children; ++child) {
            walk(tables, blocks, count, {0, child}, tables.points / children);
        }
        for_each_output(blocks, count, [&](const convolution& block, std::size_t output) {
            transform::close_im(tables, block.gathered[output][0], block.results[output]);
        });
    }

private:
    using transform = transform_kernels<Four>;
    using complex = complex_lanes<typename Four::part>;

    template <class Function>
    static void for_each_input(const convolution* blocks, std::size_t count, Function&& function) {
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t input = 0; input < blocks[i].inputs; ++input) {
                function(blocks[i], input);
            }
        }
    }

    template <class Function>
    static void for_each_output(const convolution* blocks, std::size_t count, Function&& function) {
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t output = 0; output < blocks[i].outputs; ++output) {
                function(blocks[i], output);
            }
        }
    }

    static void walk(const transform_tables& tables, const convolution* blocks, std::size_t count, tree_place place,
                     std::size_t points) {
        if (points <= transform::cached_points) {
            for (std::size_t i = 0; i < count; ++i) {
                finish(tables, blocks[i], place, points);
            }
            return;
        }
        const std::size_t first = 2 * place.number * points;
        for_each_input(blocks, count, [&](const convolution& block, std::size_t input) {
            transform::split_pass(tables, place, points, block.spectra[input] + first);
        });
        for (std::size_t child = 0; child < 4; ++child) {
            walk(tables, blocks, count, {place.level + 1, 4 * place.number + child}, points / 4);
        }
        for_each_output(blocks, count, [&](const convolution& block, std::size_t output) {
            transform::join_pass(tables, place, points, block.gathered[output][0] + first);
        });
    }

    static void finish(const transform_tables& tables, const convolution& block, tree_place place, std::size_t points) {
        const std::size_t first = 2 * place.number * points;
        for (std::size_t input = 0; input < block.inputs; ++input) {
            transform::split_node(tables, place, points, block.spectra[input] + first);
        }
        for (std::size_t output = 0; output < block.outputs; ++output) {
            multiply(block, output, first, first + 2 * points);
            transform::join_node(tables, place, points, block.gathered[output][0] + first);
        }
    }

    static void multiply(const convolution& block, std::size_t output, std::size_t first, std::size_t last) {
        switch (block.inputs) {
        case 1:
            return multiply_inputs<1>(block, output, first, last);
        case 2:
            return multiply_inputs<2>(block, output, first, last);
        default:
            return multiply_inputs<3>(block, output, first, last);
        }
    }

    template <std::size_t Inputs>
    static void multiply_inputs(const convolution& block, std::size_t output, std::size_t first, std::size_t last) {
        block.parts == 1 ? sum_up<Inputs, 1>(block, output, first, last)
                         : sum_up<Inputs, 2>(block, output, first, last);
    }

    template <std::size_t Inputs, std::size_t Parts>
    static void sum_up(const convolution& block, std::size_t output, std::size_t first, std::size_t last) {
        const factors<Inputs> now(block, output, 0);
        const factors<Inputs> later(block, output, Parts - 1);
        for (std::size_t place = first; place < last; place += 8) {
            for (std::size_t at = place; at < place + 4; at += Four::part::lanes) {
                const complex begun = later.products(at);
                if constexpr (Parts == 2) {
                    const complex ended = complex::load(now.to + at) + now.products(at);
                    ended.store(now.to + at);
                }
                begun.store(later.to + at);
            }
        }
    }

    /// What one part contributes to one output.
    template <std::size_t Inputs>
    struct factors {
        const double* signals[Inputs];
        const double* filters[Inputs];
        double* to;

        factors(const convolution& block, std::size_t output, std::size_t part) : to(block.gathered[output][part]) {
            for (std::size_t input = 0; input < Inputs; ++input) {
                signals[input] = block.spectra[input];
                filters[input] = block.filters[input][output][part];
            }
        }

        complex products(std::size_t at) const {
            complex sum = complex::load(signals[0] + at) * complex::load(filters[0] + at);
            for (std::size_t input = 1; input < Inputs; ++input) {
                sum = sum + complex::load(signals[input] + at) * complex::load(filters[input] + at);
            }
            return sum;
        }
    };
};

} // namespace kelvane::ssrc
