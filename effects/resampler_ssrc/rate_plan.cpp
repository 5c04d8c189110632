#include "effects/resampler_ssrc/rate_plan.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace kelvane::ssrc {

namespace {

constexpr std::uint64_t highest_common_hz = std::numeric_limits<std::int32_t>::max();

/// 0 where there is none.
std::uint32_t oversampling_for(std::uint64_t k) noexcept {
    if (k == 1) {
        return 1;
    }
    if (k % 2 == 0) {
        return 2;
    }
    return k % 3 == 0 ? 3 : 0;
}

} // namespace

std::optional<rate_plan> plan_rates(std::uint32_t input_hz, std::uint32_t output_hz) noexcept {
    const std::uint64_t common_hz = std::lcm(std::uint64_t{input_hz}, std::uint64_t{output_hz});
    const std::uint32_t osf = oversampling_for(common_hz / std::max(input_hz, output_hz));
    if (osf == 0 || common_hz > highest_common_hz) {
        return std::nullopt;
    }
    return rate_plan{input_hz, output_hz, static_cast<std::uint32_t>(common_hz), osf};
}

} // namespace kelvane::ssrc
