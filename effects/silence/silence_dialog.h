// The settings dialog of "Skip Silence": two trackbars and a check box, handed back by OK.
#pragma once

#include "effects/silence/silence_settings.h"

#include <cstdint>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// The trackbars' positions: milliseconds, and dB above the lowest threshold, because a position is not negative.
inline constexpr int lowest_minimum_position = skip_silence_settings::shortest_dialog_minimum_ms;
inline constexpr int highest_minimum_position = skip_silence_settings::longest_dialog_minimum_ms;
inline constexpr int lowest_threshold_position = 0;
inline constexpr int highest_threshold_position =
    skip_silence_settings::highest_dialog_threshold_db - skip_silence_settings::lowest_dialog_threshold_db;

/// Where the trackbars stand for stored values.
int minimum_position(std::uint32_t minimum_ms);
int threshold_position(std::int32_t threshold_db);

/// What positions of the trackbars stand for.
std::uint32_t minimum_ms_at(int position);
std::int32_t threshold_db_at(int position);

/// Runs the dialog. OK reports the settings, any other end reports nothing. Throws `exception_not_implemented` where
/// there are no dialogs.
void show_silence_dialog(const velmora::effect_preset& opening, void* parent_window,
                         velmora::preset_change_callback& callback);

} // namespace kelvane
