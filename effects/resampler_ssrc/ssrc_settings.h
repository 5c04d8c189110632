// The settings of "Resampler (dBpoweramp/SSRC)".
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kelvane {

struct ssrc_settings {
    static constexpr velmora::guid identity{
        0x4D26D35C, 0x5DA8, 0x4F9C, {0xAE, 0x8F, 0x5A, 0x4C, 0x8B, 0x8F, 0xEE, 0x40}};

    std::uint32_t target_rate_hz = 44100; ///< 1000 to 20000000
    bool excludes = false;                ///< whether `exclusions` counts
    std::string exclusions;               ///< UTF-8, as `parse_rate_exclusions` reads it

    bool operator==(const ssrc_settings&) const = default;

    /// From a payload: target rate and a number of no meaning (32 bits each), 1 byte that is not 0 when the exclusions
    /// count, the length of their text (32 bits) and the text, which a zero byte ends early; numbers are little-endian.
    /// Behind the target rate a payload may end anywhere: what is whole counts. Throws
    /// `velmora_io::exception_io_data` when the target rate is missing or out of its range.
    static ssrc_settings read(std::span<const std::byte> payload);

    /// Throws `mox::exception_overflow` for a text past 32 bits of length.
    std::vector<std::byte> write() const;

    /// Those that a host asks for. There is one quality.
    static ssrc_settings for_rate(std::uint32_t target_rate_hz, double quality_fraction);
};

} // namespace kelvane
