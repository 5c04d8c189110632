// Channel layouts in words.
#pragma once

#include "host/audio/audio_format.h"

#include <string>

namespace host {

/// "stereo", "5.1", or the mask in hexadecimal with the channel count when the layout has no common name.
std::string layout_text(std::uint32_t channels, std::uint32_t channel_mask);

/// "44100 Hz, stereo"
std::string format_text(const audio_format& format);

} // namespace host
