// The speakers that a file names where libsndfile does not tell them.
#pragma once

#include "host/audio/binary_file.h"
#include "host/audio/channel_order.h"

namespace host {

/// From the CHAN chunk of an AIFF file. Empty when there is none, or one that speaks in another way than by a common
/// layout tag or a speaker bitmap.
speaker_list aiff_speakers(binary_file& file);

/// From the channel mask tag of a FLAC file. Empty when there is none.
speaker_list flac_speakers(binary_file& file);

} // namespace host
