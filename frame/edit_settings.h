// Editing a preset through a settings dialog.
#pragma once

#include "velmora/effect_factory.h"

namespace kelvane {

/// `effect_factory::edit_settings` of every effect with a dialog: runs the factory's dialog on `edited` and writes the
/// last preset that it reported there. True when that differs from what `edited` held.
bool edit_settings_by_dialog(velmora::effect_factory_with_dialog& factory, velmora::effect_preset& edited,
                             void* parent_window);

} // namespace kelvane
