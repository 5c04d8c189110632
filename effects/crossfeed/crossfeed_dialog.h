// The settings dialog of "Meier Crossfeed": a trackbar for the strength, heard at once.
#pragma once

#include "effects/crossfeed/crossfeed_settings.h"

#include <cstdint>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// The trackbar's positions: steps of the strength, which is also what the dialog shows.
inline constexpr int lowest_crossfeed_position =
    crossfeed_settings::lowest_dialog_strength / crossfeed_settings::dialog_strength_step;
inline constexpr int highest_crossfeed_position =
    crossfeed_settings::highest_dialog_strength / crossfeed_settings::dialog_strength_step;

/// Where the trackbar stands for a stored strength.
int crossfeed_position(std::int32_t strength);

/// What a position of the trackbar stands for.
crossfeed_settings crossfeed_settings_at(int position);

/// Runs the dialog. Every move of the trackbar is reported, and OK reports the current settings once more; any other
/// end reports the opening preset. An exception of the callback closes the dialog and comes out behind it. Throws
/// `exception_not_implemented` where there are no dialogs.
void show_crossfeed_dialog(const velmora::effect_preset& opening, void* parent_window,
                           velmora::preset_change_callback& callback);

} // namespace kelvane
