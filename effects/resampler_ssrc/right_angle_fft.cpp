#include "effects/resampler_ssrc/right_angle_fft.h"

#include "effects/resampler_ssrc/unit_root.h"

#include <bit>

namespace kelvane::ssrc {

namespace {

constexpr double root_turns = 0.25; ///< of i

// The angles of the tree are binary fractions of a turn, exact in a double.

/// Of child number `child` of a node of `children`, whose own angle is `turns`.
double child_turns(double turns, std::size_t child, std::size_t children) noexcept {
    return (turns + static_cast<double>(child)) / static_cast<double>(children);
}

/// Of a node by its number in a level that begins with the root's children.
double node_turns(std::size_t number, std::size_t nodes, std::size_t root_children) noexcept {
    if (nodes == root_children) {
        return child_turns(root_turns, number, root_children);
    }
    return child_turns(node_turns(number / 4, nodes / 4, root_children), number % 4, 4);
}

/// w, w^2 and w^3 of a node; consecutive numbers of one quantity lie `step` apart.
void write_roots(double turns, double* numbers, std::size_t step) noexcept {
    for (std::size_t power = 1; power <= 3; ++power) {
        const unit_root root = root_at(turns / 4.0 * static_cast<double>(power));
        numbers[(2 * power - 2) * step] = root.re;
        numbers[(2 * power - 1) * step] = root.im;
    }
}

} // namespace

right_angle_fft::right_angle_fft(std::size_t points, const vector_kernels& kernels)
    : points_(points), kernels_(&kernels), opening_(numbers_per_node),
      leaves_(points / leaf_points * numbers_per_leaf) {
    if (opens_with_two()) {
        const unit_root root = root_at(root_turns / 2.0);
        opening_[0] = root.re;
        opening_[1] = root.im;
    } else {
        write_roots(root_turns, opening_.data(), 1);
    }
    std::size_t nodes = opens_with_two() ? 2 : 4;
    for (std::size_t level = 0; points / nodes > leaf_points; ++level) {
        make_inner_level(level, nodes);
        nodes *= 4;
    }
    make_leaves();
}

bool right_angle_fft::opens_with_two() const noexcept {
    return std::countr_zero(points_) % 2 != 0;
}

transform_tables right_angle_fft::tables() const noexcept {
    return {points_, opens_with_two(), opening_.data(), inner_numbers_.data(), leaves_.data()};
}

void right_angle_fft::make_inner_level(std::size_t level, std::size_t nodes) {
    inner_[level] = aligned_array<double>(numbers_per_node * nodes);
    inner_numbers_[level] = inner_[level].data();
    for (std::size_t node = 0; node < nodes; ++node) {
        write_roots(node_turns(node, nodes, opens_with_two() ? 2 : 4), inner_[level].data() + numbers_per_node * node,
                    1);
    }
}

void right_angle_fft::make_leaves() {
    const std::size_t leaves = points_ / leaf_points;
    for (std::size_t leaf = 0; leaf < leaves; ++leaf) {
        const double turns = node_turns(leaf, leaves, opens_with_two() ? 2 : 4);
        double* numbers = leaves_.data() + numbers_per_leaf * leaf;
        write_roots(turns, numbers, 1);
        for (std::size_t child = 0; child < 4; ++child) {
            write_roots(child_turns(turns, child, 4), numbers + numbers_per_node + child, 4);
        }
    }
}

std::size_t right_angle_fft::root_number(std::size_t place) const noexcept {
    // Within a leaf the lanes are the children and the blocks their children.
    const std::size_t child = place % 4;
    const std::size_t grandchild = place / 4 % 4;
    const std::size_t leaves = points_ / leaf_points;
    const double leaf_turns = node_turns(place / leaf_points, leaves, opens_with_two() ? 2 : 4);
    const double turns = child_turns(child_turns(leaf_turns, child, 4), grandchild, 4);
    return static_cast<std::size_t>(turns * static_cast<double>(points_) - root_turns);
}

} // namespace kelvane::ssrc
