// The right-angle transform's passes, on vectors of four (complex_of_four.h).
#pragma once

#include "effects/resampler_ssrc/complex_of_four.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>

namespace kelvane::ssrc {

constexpr std::size_t leaf_points = 16;
constexpr std::size_t numbers_per_node = 6;
constexpr std::size_t numbers_per_leaf = 30;

/// Where a node lies in the tree: its level below the root's children and its number in that level.
struct tree_place {
    std::size_t level;
    std::size_t number;
};

template <class Four>
class transform_of_four {
public:
    static void forward(const transform_tables& tables, const double* re, const double* im, double* spectrum) {
        const std::size_t children = tables.opens_with_two ? 2 : 4;
        const std::size_t child_points = tables.points / children;
        tables.opens_with_two ? open_two(tables, re, im, spectrum) : open_four(tables, re, im, spectrum);
        for (std::size_t child = 0; child < children; ++child) {
            split_node(tables, {0, child}, child_points, spectrum + 2 * child * child_points);
        }
    }

    static void backward(const transform_tables& tables, double* spectrum, double* re, double* im) {
        join_children(tables, spectrum);
        tables.opens_with_two ? close_two(tables, spectrum, re, im) : close_four(tables, spectrum, re, im);
    }

    static void backward_im(const transform_tables& tables, double* spectrum, double* im) {
        join_children(tables, spectrum);
        tables.opens_with_two ? close_two_im(tables, spectrum, im) : close_four_im(tables, spectrum, im);
    }

private:
    using complex = complex_of_four<Four>;
    using node = node_of_four<Four>;
    using four_quarters = quarters<Four>;

    static complex load_planes(const double* re, const double* im) { return {Four::load(re), Four::load(im)}; }

    static void open_four(const transform_tables& tables, const double* re, const double* im, double* to) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        for (std::size_t i = 0; i < quarter; i += 4) {
            const four_quarters whole{load_planes(re + i, im + i), load_planes(re + i + quarter, im + i + quarter),
                                      load_planes(re + i + 2 * quarter, im + i + 2 * quarter),
                                      load_planes(re + i + 3 * quarter, im + i + 3 * quarter)};
            split(whole, roots).store(to + 2 * i, 2 * quarter);
        }
    }

    static void open_two(const transform_tables& tables, const double* re, const double* im, double* to) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for (std::size_t i = 0; i < half; i += 4) {
            const complex low = load_planes(re + i, im + i);
            const complex high = load_planes(re + i + half, im + i + half) * w;
            (low + high).store(to + 2 * i);
            (low - high).store(to + 2 * (i + half));
        }
    }

    static void close_four(const transform_tables& tables, const double* from, double* re, double* im) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        const auto put = [re, im](const complex& value, std::size_t at) {
            value.re.store(re + at);
            value.im.store(im + at);
        };
        for (std::size_t i = 0; i < quarter; i += 4) {
            const four_quarters whole = join(four_quarters::load(from + 2 * i, 2 * quarter), roots);
            put(whole.q0, i);
            put(whole.q1, i + quarter);
            put(whole.q2, i + 2 * quarter);
            put(whole.q3, i + 3 * quarter);
        }
    }

    static void close_two(const transform_tables& tables, const double* from, double* re, double* im) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for (std::size_t i = 0; i < half; i += 4) {
            const complex first = complex::load(from + 2 * i);
            const complex second = complex::load(from + 2 * (i + half));
            const complex low = first + second;
            const complex high = turned_back(first - second, w);
            low.re.store(re + i);
            low.im.store(im + i);
            high.re.store(re + i + half);
            high.im.store(im + i + half);
        }
    }

    /// The imaginary part of a x conjugate of w.
    static Four turned_back_im(const complex& a, const complex& w) { return a.im * w.re - a.re * w.im; }

    static void close_four_im(const transform_tables& tables, const double* from, double* im) {
        const node roots = node::all(tables.opening);
        const std::size_t quarter = tables.points / 4;
        for (std::size_t i = 0; i < quarter; i += 4) {
            const four_quarters whole = join_unturned(four_quarters::load(from + 2 * i, 2 * quarter));
            whole.q0.im.store(im + i);
            turned_back_im(whole.q1, roots.w1).store(im + i + quarter);
            turned_back_im(whole.q2, roots.w2).store(im + i + 2 * quarter);
            turned_back_im(whole.q3, roots.w3).store(im + i + 3 * quarter);
        }
    }

    static void close_two_im(const transform_tables& tables, const double* from, double* im) {
        const complex w = complex::all(tables.opening);
        const std::size_t half = tables.points / 2;
        for (std::size_t i = 0; i < half; i += 4) {
            const complex first = complex::load(from + 2 * i);
            const complex second = complex::load(from + 2 * (i + half));
            (first.im + second.im).store(im + i);
            turned_back_im(first - second, w).store(im + i + half);
        }
    }

    /// Depth first: a node that fits a level of the cache is done with before the next one is touched.
    static void split_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        if (points == leaf_points) {
            split_leaf(tables.leaves + numbers_per_leaf * place.number, data);
            return;
        }
        const node roots = node::all(tables.inner[place.level] + numbers_per_node * place.number);
        const std::size_t quarter = points / 4;
        for (std::size_t i = 0; i < quarter; i += 4) {
            split(four_quarters::load(data + 2 * i, 2 * quarter), roots).store(data + 2 * i, 2 * quarter);
        }
        for (std::size_t child = 0; child < 4; ++child) {
            split_node(tables, {place.level + 1, 4 * place.number + child}, quarter, data + 2 * child * quarter);
        }
    }

    static void join_node(const transform_tables& tables, tree_place place, std::size_t points, double* data) {
        if (points == leaf_points) {
            join_leaf(tables.leaves + numbers_per_leaf * place.number, data);
            return;
        }
        const std::size_t quarter = points / 4;
        for (std::size_t child = 0; child < 4; ++child) {
            join_node(tables, {place.level + 1, 4 * place.number + child}, quarter, data + 2 * child * quarter);
        }
        const node roots = node::all(tables.inner[place.level] + numbers_per_node * place.number);
        for (std::size_t i = 0; i < quarter; i += 4) {
            join(four_quarters::load(data + 2 * i, 2 * quarter), roots).store(data + 2 * i, 2 * quarter);
        }
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
        const four_quarters children = split(four_quarters::load(data, 8), node::all(numbers));
        split(transposed(children), node::each(numbers + numbers_per_node)).store(data, 8);
    }

    static void join_leaf(const double* numbers, double* data) {
        const four_quarters children = join(four_quarters::load(data, 8), node::each(numbers + numbers_per_node));
        join(transposed(children), node::all(numbers)).store(data, 8);
    }
};

} // namespace kelvane::ssrc
