// The settings of all effects that have any, by the effect's GUID.
#pragma once

#include "frame/settings_words.h"

namespace kelvane {

/// Null for an effect without settings.
const settings_words* find_settings_words(const velmora::guid& effect);

} // namespace kelvane
