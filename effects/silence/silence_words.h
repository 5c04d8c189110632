// The settings of "Skip Silence" in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> silence_words();

} // namespace kelvane
