// The settings of "Skip Silence".
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {

struct skip_silence_settings {
    static constexpr velmora::guid identity{
        0x0860E415, 0xB70D, 0x4453, {0xAF, 0xE7, 0xA0, 0x96, 0x4C, 0x4B, 0x16, 0x2F}};

    /// What the dialog gives.
    static constexpr std::uint32_t shortest_dialog_minimum_ms = 200;
    static constexpr std::uint32_t longest_dialog_minimum_ms = 20'000;
    static constexpr std::int32_t lowest_dialog_threshold_db = -100;
    static constexpr std::int32_t highest_dialog_threshold_db = -20;

    /// How long a silence must last to be cut. Any value is taken.
    std::uint32_t minimum_ms = 5000;

    /// What stays below it is silence, in dB of full scale. Any value is taken.
    std::int32_t threshold_db = -60;

    /// Whether a silence that is cut keeps its first `minimum_ms`.
    bool keeps_initial = true;

    bool operator==(const skip_silence_settings&) const = default;

    /// From a payload of 12 bytes: minimum, threshold (signed) and the flag (bit 0 of the third field), 32 bits each,
    /// little-endian. Fewer than 8 bytes give the defaults, and fewer than 12 the flag's default; bytes behind the
    /// twelfth do not count.
    static skip_silence_settings read(std::span<const std::byte> payload);

    std::vector<std::byte> write() const;
};

} // namespace kelvane
