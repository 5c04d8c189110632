// The rates that a resampler can be asked for.
#pragma once

#include <cstdint>

namespace kelvane {

/// Both inclusive, in Hz.
inline constexpr std::uint32_t min_target_rate_hz = 1000;
inline constexpr std::uint32_t max_target_rate_hz = 20'000'000;

constexpr bool is_target_rate(std::int64_t rate_hz) noexcept {
    return rate_hz >= min_target_rate_hz && rate_hz <= max_target_rate_hz;
}

} // namespace kelvane
