// The settings of "Meier Crossfeed" in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> crossfeed_words();

} // namespace kelvane
