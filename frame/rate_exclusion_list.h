// The input rates that a sample-rate converter must leave alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// Both bounds belong to the range, in Hz. A range whose bounds stand high first holds no rate.
struct rate_exclusion_range {
    std::uint32_t low_hz;
    std::uint32_t high_hz;

    bool operator==(const rate_exclusion_range&) const = default;
};

/// In the order of the text; duplicates, overlaps and empty ranges are kept.
using rate_exclusion_list = std::vector<rate_exclusion_range>;

/// Reads a line such as "44100;88200-96000": rates and ranges, separated by commas or semicolons. Other signs than
/// digits and these are passed over; numbers wrap at 32 bits. Never fails: what makes no sense gives a range that holds
/// no real rate.
rate_exclusion_list parse_rate_exclusions(std::string_view text);

/// Whether a range of the list holds the rate.
bool is_excluded(const rate_exclusion_list& exclusions, std::uint32_t rate_hz);

/// The list as a line that a person reads and `parse_rate_exclusions` reads back.
std::string to_text(const rate_exclusion_list& exclusions);

} // namespace kelvane
