// The right-angle transform's passes.
#pragma once

#include "effects/resampler_ssrc/complex_lanes.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

/// Where a node lies in the tree: its level below the root's children and its number in that level.
struct tree_place {
    std::size_t level;
    std::size_t number;
};

template <class Four>
class transform_kernels {
public:
    static void forward(const transform_tables& tables, const double* re, const double* im, double* spectrum) {
        const std::size_t children = tables.opens_with_two ? 2 : 4;
        const std::size_t child_points = tables.points / children;
        open(tables, re, im, spectrum);
        for (std::size_t child = 0; child < children; ++child) {
            split_node(tables, {0, child}, child_points, spectrum + 2 * child * child_points);
        }
    }

    static void backward(const transform_tables& tables, double* spectrum, double* re, double* im) {
        join_children(tables, spectrum);
        tables.opens_with_two ? close_two(tables, spectrum, re, im) : close_four(tables, spectrum, re, im);
    }

    /// The root's pass alone, there and back; of what comes back only the imaginary parts.
    static void open(const transform_tables& tables, const double* re, const double* im, double* spectrum) {
        tables.opens_with_two ? open_two(tables, re, im, spectrum) : open_four(tables, re, im, spectrum);
    }
    static void close_im(const transform_tables& tables, const double* spectrum, double* im) {
        tables.opens_with_two ? close_two_im(tables, spectrum, im) : close_four_im(tables, spectrum, im);
    }

    /// A node's own pass alone, there and back.
    static void split_pass(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        const node roots = node::all(tables.inner[place.level] + numbers_per_node * place.number);
        const std::size_t quarter = points / 4;
        for_parts(quarter, [=](std::size_t, std::size_t at) {
            split(part_quarters::load(data + at, 2 * quarter), roots).store(data + at, 2 * quarter);
        });
    }
    static void join_pass(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        const node roots = node::all(tables.inner[place.level] + numbers_per_node * place.number);
        const std::size_t quarter = points / 4;
        for_parts(quarter, [=](std::size_t, std::size_t at) {
            join(part_quarters::load(data + at, 2 * quarter), roots).store(data + at, 2 * quarter);
        });
    }

    /// A node with all below it, depth first: what fits a level of the cache is done with before the next is touched.
    static void split_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        if (points <= cached_points) {
            split_cached_node(tables, place, points, data);
            return;
        }
        split_pass(tables, place, points, data);
        for (std::size_t child = 0; child < 4; ++child) {
            split_node(tables, {place.level + 1, 4 * place.number + child}, points / 4, data + child * points / 2);
        }
    }
    static void join_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        if (points <= cached_points) {
            join_cached_node(tables, place, points, data);
            return;
        }
        for (std::size_t child = 0; child < 4; ++child) {
            join_node(tables, {place.level + 1, 4 * place.number + child}, points / 4, data + child * points / 2);
        }
        join_pass(tables, place, points, data);
    }

    /// The points of a node that the first level of the cache holds for several signals.
    static constexpr std::size_t cached_points = 256;

private:
    using part = typename Four::part;
    using complex = complex_lanes<part>;
    using node = node_lanes<part>;
    using part_quarters = quarters<part>;
    static constexpr std::size_t lanes = part::lanes;
    static constexpr std::size_t parts = 4 / lanes; ///< of a block

    /// Calls the function for all parts of `points` points: with its place among the points and in a spectrum.
    template <class Function>
    static void for_parts(std::size_t points, Function&& function) {
        for (std::size_t block = 0; block < points; block += 4) {
            for (std::size_t lane = 0; lane < 4; lane += lanes) {
                function(block + lane, 2 * block + lane);
            }
        }
    }

    static complex load_planes(const double* re, const double* im) { return {part::load(re), part::load(im)}; }
    static void store_planes(const complex& value, double* re, double* im) {
        value.re.store(re);
        value.im.store(im);
    }

    static void open_four(const transform_tables& tables, const double* re, const double* im, double* to) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        for_parts(quarter, [=](std::size_t i, std::size_t at) {
            const part_quarters whole{load_planes(re + i, im + i), load_planes(re + i + quarter, im + i + quarter),
                                      load_planes(re + i + 2 * quarter, im + i + 2 * quarter),
                                      load_planes(re + i + 3 * quarter, im + i + 3 * quarter)};
            split(whole, roots).store(to + at, 2 * quarter);
        });
    }

    static void open_two(const transform_tables& tables, const double* re, const double* im, double* to) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for_parts(half, [=](std::size_t i, std::size_t at) {
            const complex low = load_planes(re + i, im + i);
            const complex high = load_planes(re + i + half, im + i + half) * w;
            (low + high).store(to + at);
            (low - high).store(to + at + 2 * half);
        });
    }

    static void close_four(const transform_tables& tables, const double* from, double* re, double* im) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        for_parts(quarter, [=](std::size_t i, std::size_t at) {
            const part_quarters whole = join(part_quarters::load(from + at, 2 * quarter), roots);
            store_planes(whole.q0, re + i, im + i);
            store_planes(whole.q1, re + i + quarter, im + i + quarter);
            store_planes(whole.q2, re + i + 2 * quarter, im + i + 2 * quarter);
            store_planes(whole.q3, re + i + 3 * quarter, im + i + 3 * quarter);
        });
    }

    static void close_two(const transform_tables& tables, const double* from, double* re, double* im) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for_parts(half, [=](std::size_t i, std::size_t at) {
            const complex first = complex::load(from + at);
            const complex second = complex::load(from + at + 2 * half);
            store_planes(first + second, re + i, im + i);
            store_planes(times_conjugate(first - second, w), re + i + half, im + i + half);
        });
    }

    /// The imaginary part of a x conjugate of w.
    static part times_conjugate_im(const complex& a, const complex& w) { return a.im * w.re - a.re * w.im; }

    static void close_four_im(const transform_tables& tables, const double* from, double* im) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        for_parts(quarter, [=](std::size_t i, std::size_t at) {
            const part_quarters whole = join_unturned(part_quarters::load(from + at, 2 * quarter));
            whole.q0.im.store(im + i);
            times_conjugate_im(whole.q1, roots.w1).store(im + i + quarter);
            times_conjugate_im(whole.q2, roots.w2).store(im + i + 2 * quarter);
            times_conjugate_im(whole.q3, roots.w3).store(im + i + 3 * quarter);
        });
    }

    static void close_two_im(const transform_tables& tables, const double* from, double* im) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for_parts(half, [=](std::size_t i, std::size_t at) {
            const complex first = complex::load(from + at);
            const complex second = complex::load(from + at + 2 * half);
            (first.im + second.im).store(im + i);
            times_conjugate_im(first - second, w).store(im + i + half);
        });
    }

    /// Level by level.
    static void split_cached_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        std::size_t nodes = 1;
        for (; points > leaf_points; points /= 4) {
            for (std::size_t i = 0; i < nodes; ++i) {
                split_pass(tables, {place.level, place.number + i}, points, data + 2 * i * points);
            }
            place = {place.level + 1, 4 * place.number};
            nodes *= 4;
        }
        for (std::size_t i = 0; i < nodes; ++i) {
            split_leaf(tables.leaves + numbers_per_leaf * (place.number + i), data + 2 * i * leaf_points);
        }
    }

    static void join_cached_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        const std::size_t leaves = points / leaf_points;
        for (std::size_t i = 0; i < leaves; ++i) {
            join_leaf(tables.leaves + numbers_per_leaf * (place.number * leaves + i), data + 2 * i * leaf_points);
        }
        for (std::size_t size = 4 * leaf_points; size <= points; size *= 4) {
            const std::size_t nodes = points / size;
            const std::size_t level = place.level + levels_between(points, size);
            for (std::size_t i = 0; i < nodes; ++i) {
                join_pass(tables, {level, place.number * nodes + i}, size, data + 2 * i * size);
            }
        }
    }

    static constexpr std::size_t levels_between(std::size_t points, std::size_t size) {
        std::size_t levels = 0;
        for (; size < points; size *= 4) {
            ++levels;
        }
        return levels;
    }

    static void join_children(const transform_tables& tables, double* spectrum) {
        const std::size_t children = tables.opens_with_two ? 2 : 4;
        const std::size_t child_points = tables.points / children;
        for (std::size_t child = 0; child < children; ++child) {
            join_node(tables, {0, child}, child_points, spectrum + 2 * child * child_points);
        }
    }

    /// The last two levels. Between them the lanes change from points to children, and stay so: the order of a spectrum
    /// is nobody's business but the transform's.
    static void split_leaf(const double* numbers, double* data) {
        part_quarters children[parts];
        for (std::size_t p = 0; p < parts; ++p) {
            children[p] = split(part_quarters::load(data + p * lanes, 8), node::all(numbers));
        }
        for (std::size_t p = 0; p < parts; ++p) {
            const node roots = node::each(numbers + numbers_per_node + p * lanes);
            split(turned(children, p), roots).store(data + p * lanes, 8);
        }
    }

    static void join_leaf(const double* numbers, double* data) {
        part_quarters children[parts];
        for (std::size_t p = 0; p < parts; ++p) {
            const node roots = node::each(numbers + numbers_per_node + p * lanes);
            children[p] = join(part_quarters::load(data + p * lanes, 8), roots);
        }
        for (std::size_t p = 0; p < parts; ++p) {
            join(turned(children, p), node::all(numbers)).store(data + p * lanes, 8);
        }
    }
};

} // namespace kelvane::ssrc
