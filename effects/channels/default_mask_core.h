// The speakers that a channel count stands for when a block's mask does not fit it.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace kelvane {

/// More channels than this have no mask.
inline constexpr std::uint32_t max_masked_channels = 32;

/// The usual layout of up to ten channels, and the lowest speaker bits for other counts. `channels` is at most
/// `max_masked_channels`. Thirty-two give 0: a shift by the width of the mask counts as no shift.
constexpr std::uint32_t default_mask(std::uint32_t channels) noexcept {
    // Nine channels have no usual layout.
    constexpr std::array<std::uint32_t, 11> usual{0, 0x4, 0x3, 0xB, 0x33, 0x3B, 0x3F, 0x70F, 0x63F, 0, 0x6FF};
    if (channels < usual.size() && (usual[channels] != 0 || channels == 0)) {
        return usual[channels];
    }
    return (std::uint32_t{1} << channels % max_masked_channels) - 1;
}

/// The mask itself when it names as many speakers as there are channels, else the default one.
constexpr std::uint32_t corrected_mask(std::uint32_t channel_mask, std::uint32_t channels) noexcept {
    const bool fits = static_cast<std::uint32_t>(std::popcount(channel_mask)) == channels;
    return fits ? channel_mask : default_mask(channels);
}

} // namespace kelvane
