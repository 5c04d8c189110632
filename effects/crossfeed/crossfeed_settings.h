// The settings of "Meier Crossfeed".
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {

struct crossfeed_settings {
    static constexpr velmora::guid identity{
        0xD487D723, 0xFD8C, 0x4106, {0x90, 0x23, 0x56, 0x20, 0xAE, 0xA0, 0xA8, 0x85}};

    /// The strengths that the dialog gives: whole steps.
    static constexpr std::int32_t lowest_dialog_strength = 100;
    static constexpr std::int32_t highest_dialog_strength = 10'000;
    static constexpr std::int32_t dialog_strength_step = 100;

    /// How much of the difference comes back. Any value is taken.
    std::int32_t strength = 1000;

    bool operator==(const crossfeed_settings&) const = default;

    /// From a payload of 4 bytes: the strength, signed, little-endian. A shorter one gives the defaults; bytes behind
    /// the fourth do not count.
    static crossfeed_settings read(std::span<const std::byte> payload);

    std::vector<std::byte> write() const;
};

} // namespace kelvane
