// The speakers of audio that does not name its own.
#pragma once

#include <array>
#include <cstdint>

namespace host {

/// The channel mask that a count of channels stands for. Past 32 channels there are no more bits.
constexpr std::uint32_t default_mask(std::uint32_t channels) noexcept {
    constexpr std::array<std::uint32_t, 11> masks{0, 0x4, 0x3, 0xB, 0x33, 0x3B, 0x3F, 0x70F, 0x63F, 0x1FF, 0x6FF};
    if (channels < masks.size()) {
        return masks[channels];
    }
    return channels < 32 ? (std::uint32_t{1} << channels) - 1 : 0xFFFFFFFF;
}

} // namespace host
