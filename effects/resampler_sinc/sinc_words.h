// The settings of "Resampler (RetroArch)" in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> sinc_words();

} // namespace kelvane
