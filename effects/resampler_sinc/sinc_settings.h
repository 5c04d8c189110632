// The settings of "Resampler (RetroArch)".
#pragma once

#include "effects/resampler_sinc/sinc_quality_core.h"
#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kelvane {

struct sinc_settings {
    static constexpr velmora::guid identity{
        0x421C3E6E, 0xF642, 0x465D, {0x8D, 0xBD, 0xDE, 0xE5, 0x28, 0x75, 0x61, 0xD6}};

    /// The dialog keeps it within the limits of target_rates.h; any value is taken, and a rate that no converter can be
    /// made for fails when the audio comes.
    std::uint32_t target_rate_hz = 44100;

    /// Index of `sinc_qualities`. One that has no row is kept, and heard as "Normal".
    std::uint32_t quality = normal_sinc_quality;

    bool excludes = false;  ///< whether `exclusions` counts
    std::string exclusions; ///< UTF-8, as `parse_rate_exclusions` reads it

    bool operator==(const sinc_settings&) const = default;

    /// From a payload: target rate and quality (32 bits each), 1 byte that is not 0 when the exclusions count, the
    /// length of their text (32 bits) and the text; numbers are little-endian. One of exactly 8 bytes is of an older
    /// form: a flag for high quality and the target rate, 32 bits each. A payload that ends early keeps its rate if
    /// that lies within these limits, and its quality, whatever that is, has the defaults for what is missing (a
    /// quality of 0xFFFFFFFF is), and excludes nothing; a whole one is taken as it is.
    static sinc_settings read(std::span<const std::byte> payload);

    /// Throws `mox::exception_overflow` for a text past 32 bits of length.
    std::vector<std::byte> write() const;

    /// Those that a host asks for: a target rate, and a quality from 0 (lowest) to 1 (highest).
    static sinc_settings for_rate(std::uint32_t target_rate_hz, double quality_fraction);
};

} // namespace kelvane
