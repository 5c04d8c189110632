#include "effects/resampler_ssrc/unit_root.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace kelvane::ssrc {

namespace {

unit_root in_first_octant(double turns) noexcept {
    if (turns == 0.125) {
        return {std::numbers::sqrt2 / 2.0, std::numbers::sqrt2 / 2.0};
    }
    const double angle = 2.0 * std::numbers::pi * turns;
    return {std::cos(angle), std::sin(angle)};
}

unit_root in_first_quadrant(double turns) noexcept {
    if (turns <= 0.125) {
        return in_first_octant(turns);
    }
    const unit_root mirrored = in_first_octant(0.25 - turns);
    return {mirrored.im, mirrored.re};
}

} // namespace

unit_root root_at(double turns) noexcept {
    const double within = turns - std::floor(turns);
    const auto quadrant = static_cast<int>(4.0 * within);
    const unit_root root = in_first_quadrant(within - 0.25 * quadrant);
    switch (quadrant) {
    case 0:
        return root;
    case 1:
        return {-root.im, root.re};
    case 2:
        return {-root.re, -root.im};
    default:
        return {root.im, -root.re};
    }
}

} // namespace kelvane::ssrc
