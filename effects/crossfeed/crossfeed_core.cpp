#include "effects/crossfeed/crossfeed_core.h"

#include <cstddef>

namespace kelvane {

namespace {

constexpr double corner_rad_per_s = 2128.0;

} // namespace

crossfeed_core::crossfeed_core(std::int32_t strength, std::uint32_t rate_hz) noexcept {
    const double frame_s = 1.0 / rate_hz; // first the quotient, then the products: the order decides the last bit
    decay_ = frame_s * corner_rad_per_s;
    uptake_ = strength * frame_s;
}

void crossfeed_core::process(std::span<double> interleaved) noexcept {
    state now = state_; // in registers while the loop runs, like the coefficients
    const double decay = decay_;
    const double uptake = uptake_;
    for (std::size_t left = 0; left < interleaved.size(); left += 2) {
        interleaved[left] += now.left_term;
        interleaved[left + 1] += now.right_term;
        const double taken_up = uptake * now.difference;
        now.left_term -= decay * now.left_term + taken_up;
        now.right_term -= decay * now.right_term - taken_up;
        now.difference = interleaved[left] - interleaved[left + 1];
    }
    state_ = now;
}

} // namespace kelvane
