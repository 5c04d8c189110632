// The requested layout of the layout effects.
#pragma once

#include "velmora/channel_mask.h"
#include "velmora/guid.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {

struct layout_settings {
    /// The speakers that the output has; 0 gives blocks without channels. The effects have no default preset: stereo is
    /// where a program that asks people may start from.
    std::uint32_t target_mask = velmora::layout::stereo;

    bool operator==(const layout_settings&) const = default;

    /// From a payload of exactly 4 bytes: the mask, little-endian. Any other size gives 0.
    static layout_settings read(std::span<const std::byte> payload);

    std::vector<std::byte> write() const;
};

struct layout_converter_settings : layout_settings {
    static constexpr velmora::guid identity{
        0xB3BDC598, 0xC578, 0x4662, {0x82, 0x88, 0xD1, 0x77, 0xB2, 0x15, 0x5D, 0xB2}};

    static layout_converter_settings read(std::span<const std::byte> payload) {
        return {layout_settings::read(payload)};
    }
};

struct layout_limiter_settings : layout_settings {
    static constexpr velmora::guid identity{
        0x8D7DED25, 0xA094, 0x49BF, {0x81, 0x0C, 0x86, 0x3F, 0x52, 0x2D, 0x77, 0xEF}};

    static layout_limiter_settings read(std::span<const std::byte> payload) { return {layout_settings::read(payload)}; }
};

} // namespace kelvane
