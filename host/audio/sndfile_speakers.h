// The speakers of libsndfile's channels.
#pragma once

#include "host/audio/channel_order.h"

#include <cstdint>
#include <span>
#include <vector>

namespace host {

/// The order in which libsndfile gives and takes the channels of a file that names no speakers: FLAC and Ogg prescribe
/// it by channel count, for others it is `default_mask`.
speaker_list prescribed_speakers(int sndfile_format, std::uint32_t channels);

/// The library's channel map as speakers; 0 for what has none.
speaker_list speakers_of_map(std::span<const int> map);

/// The channel map of a mask. Empty when one of its bits has no name.
std::vector<int> map_of(std::uint32_t mask);

} // namespace host
