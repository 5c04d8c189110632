// The settings of "Crossfader" in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> crossfader_words();

} // namespace kelvane
