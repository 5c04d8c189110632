// How a pair of rates is converted.
#pragma once

#include <cstdint>
#include <optional>

namespace kelvane::ssrc {

/// The rates that a conversion goes through: up, the polyphase stage to `osf` times the output rate and then the long
/// filter; down, the long filter at `osf` times the input rate and then the polyphase stage.
struct rate_plan {
    std::uint32_t input_hz;
    std::uint32_t output_hz;
    std::uint32_t common_hz; ///< the least common multiple of both
    std::uint32_t osf;       ///< oversampling factor: 1, 2 or 3

    bool goes_up() const noexcept { return output_hz > input_hz; }
    /// Of the long filter.
    std::uint32_t filter_hz() const noexcept { return osf * (goes_up() ? output_hz : input_hz); }
};

/// Nothing for a pair that cannot be converted: k = common_hz ÷ the higher rate is odd and neither 1 nor a multiple of
/// 3, or the common rate exceeds 31 bits. Both rates are above 0.
std::optional<rate_plan> plan_rates(std::uint32_t input_hz, std::uint32_t output_hz) noexcept;

} // namespace kelvane::ssrc
