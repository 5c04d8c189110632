// The settings dialog of "Crossfader": a trackbar for the length of the fade, taken over by OK.
#pragma once

#include "effects/crossfade/crossfader_settings.h"

#include <cstdint>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// The trackbar's positions, in milliseconds.
inline constexpr int lowest_crossfader_position = crossfader_settings::shortest_dialog_fade_ms;
inline constexpr int highest_crossfader_position = crossfader_settings::longest_dialog_fade_ms;

/// Where the trackbar stands for a stored fade.
int crossfader_position(std::uint32_t fade_ms);

/// What a position of the trackbar stands for.
crossfader_settings crossfader_settings_at(int position);

/// Runs the dialog. OK reports the settings at the trackbar's position, once; any other end reports nothing. Throws
/// `exception_not_implemented` where there are no dialogs.
void show_crossfader_dialog(const velmora::effect_preset& opening, void* parent_window,
                            velmora::preset_change_callback& callback);

} // namespace kelvane
