// The settings of "Crossfader".
#pragma once

#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {

struct crossfader_settings {
    static constexpr velmora::guid identity{
        0xAD158637, 0x3B75, 0x4749, {0xA2, 0x85, 0x50, 0x36, 0x2D, 0xCA, 0xF4, 0x61}};

    /// The fades that are made; a stored value beyond them becomes the nearest.
    static constexpr std::uint32_t shortest_fade_ms = 10;
    static constexpr std::uint32_t longest_fade_ms = 60'000;

    /// The fades that the dialog gives.
    static constexpr std::uint32_t shortest_dialog_fade_ms = 200;
    static constexpr std::uint32_t longest_dialog_fade_ms = 20'000;

    /// How long the tracks overlap. Any value is stored.
    std::uint32_t fade_ms = 2000;

    bool operator==(const crossfader_settings&) const = default;

    /// The fade that is made, in seconds: 0.01 to 60.
    double fade_s() const noexcept;

    /// From a payload of 4 bytes: the fade in milliseconds, unsigned, little-endian. A shorter one gives the defaults;
    /// bytes behind the fourth do not count.
    static crossfader_settings read(std::span<const std::byte> payload);

    std::vector<std::byte> write() const;
};

} // namespace kelvane
