// Presets as a person gives them on the command line.
#pragma once

#include "host/module/effect_catalogue.h"

#include <string>
#include <string_view>

namespace host {

/// The preset that `--preset` names for an effect: a row of hexadecimal bytes, or a preset file behind an @. Throws
/// `preset_error` for other text and for a preset of another effect, and what reading the file throws.
preset given_preset(const effect_entry& effect, const std::string& given);

/// Throws `preset_error` when the preset of `file` belongs to another effect.
void check_owner(const effect_entry& effect, const preset& loaded, const std::string& file);

/// Changes a preset by words. What is wrong with them is told behind `owner`, the name of the effect or of the file.
/// Throws `preset_error`.
void change_preset(preset& changed, const std::string& owner, std::string_view assignments);

} // namespace host
