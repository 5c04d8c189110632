// Settings as a table for people.
#pragma once

#include "host/objects/preset.h"

#include <string>

namespace host {

/// Writes the effect's fields with unit, range, default and the preset's values to standard output.
void print_settings(const std::string& effect_name, const preset& shown);

} // namespace host
