// What the samples of an audio file are.
#pragma once

#include <cstdint>

namespace host {

/// One bit of the mask per channel: there are no more.
inline constexpr std::uint32_t most_channels = 32;

/// `channel_mask` has as many bits (velmora/channel_mask.h) as there are channels.
struct audio_format {
    std::uint32_t sample_rate_hz = 0;
    std::uint32_t channels = 0;
    std::uint32_t channel_mask = 0;

    bool operator==(const audio_format&) const = default;
};

} // namespace host
