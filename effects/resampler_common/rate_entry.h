// The target rate as a resampler's dialog shows it: one of a list, or typed.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kelvane {

/// The rates in the list.
inline constexpr std::array<std::uint32_t, 11> offered_rates_hz{8000,  11025, 16000, 22050, 24000, 32000,
                                                                44100, 48000, 64000, 88200, 96000};

struct rate_entry {
    int selected = -1; ///< index of `offered_rates_hz`, -1 when none is selected
    std::string typed; ///< what counts then

    bool operator==(const rate_entry&) const = default;
};

/// Both inclusive, in Hz.
struct rate_limits {
    std::uint32_t lowest_hz;
    std::uint32_t highest_hz;
};

/// A rate of the list is selected there; any other is shown as if it had been typed.
rate_entry show_rate(std::uint32_t rate_hz);

/// The rate in Hz: the selected one, or the number at the start of what was typed, 0 for what is none; brought within
/// the limits.
std::uint32_t read_rate(const rate_entry& entry, const rate_limits& limits);

} // namespace kelvane
