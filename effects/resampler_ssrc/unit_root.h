// Points on the unit circle.
#pragma once

namespace kelvane::ssrc {

/// cos + i sin of an angle.
struct unit_root {
    double re;
    double im;
};

/// The point at `turns` full turns, each part within one unit in the last place. The angle is folded into the first
/// octant before it is multiplied by 2 pi, so that multiples of an eighth of a turn come out exact and the others lose
/// nothing to the product.
unit_root root_at(double turns) noexcept;

} // namespace kelvane::ssrc
