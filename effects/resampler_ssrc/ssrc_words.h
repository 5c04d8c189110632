// The settings of "Resampler (dBpoweramp/SSRC)" in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> ssrc_words();

} // namespace kelvane
