// The speakers of a channel mask, one by one.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace kelvane {

/// Whether any of `speakers` is in the mask.
constexpr bool has_any(std::uint32_t channel_mask, std::uint32_t speakers) noexcept {
    return (channel_mask & speakers) != 0;
}

/// Whether all of `speakers` are in the mask.
constexpr bool has_all(std::uint32_t channel_mask, std::uint32_t speakers) noexcept {
    return (channel_mask & speakers) == speakers;
}

/// The speaker bit of the channel with this index, counted from the lowest bit; 0 beyond the last.
constexpr std::uint32_t speaker_at(std::uint32_t channel_mask, std::size_t channel) noexcept {
    for (; channel > 0; --channel) {
        channel_mask &= channel_mask - 1; // takes the lowest bit away
    }
    return channel_mask & (0 - channel_mask);
}

/// The channel that belongs to a speaker of the mask.
constexpr std::size_t channel_of(std::uint32_t channel_mask, std::uint32_t speaker) noexcept {
    return static_cast<std::size_t>(std::popcount(channel_mask & (speaker - 1)));
}

} // namespace kelvane
