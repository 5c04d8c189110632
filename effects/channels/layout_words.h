// The requested layout of the layout effects in words.
#pragma once

#include "frame/settings_words.h"

#include <memory>

namespace kelvane {

std::unique_ptr<settings_words> layout_converter_words();
std::unique_ptr<settings_words> layout_limiter_words();

} // namespace kelvane
