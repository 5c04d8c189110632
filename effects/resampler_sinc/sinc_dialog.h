// The settings dialog of "Resampler (RetroArch)", heard at once.
#pragma once

#include "effects/resampler_sinc/sinc_settings.h"

#include <array>
#include <cstdint>
#include <string>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// The rates in the list, in which others may be typed.
inline constexpr std::array<std::uint32_t, 11> offered_sinc_rates_hz{8000,  11025, 16000, 22050, 24000, 32000,
                                                                     44100, 48000, 64000, 88200, 96000};
inline constexpr int longest_typed_rate_letters = 7;

/// What the controls show.
struct sinc_dialog_content {
    std::string rate; ///< as typed
    int quality;      ///< index in the list of qualities, -1 when none is selected
    bool excludes;
    std::string exclusions; ///< as typed
};

/// What the dialog shows of stored settings; a quality without a row shows as the one that it counts as.
sinc_dialog_content show_in_sinc_dialog(const sinc_settings& settings);

/// What the controls stand for: the number at the start of the rate, kept within 1000 and 20000000; quality 0 when none
/// of the list is selected.
sinc_settings read_sinc_dialog(const sinc_dialog_content& content);

/// Runs the dialog. Every change is reported, and OK reports the current settings once more; any other end reports the
/// opening preset. An exception of the callback closes the dialog and comes out behind it. Throws
/// `exception_not_implemented` where there are no dialogs.
void show_sinc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback);

} // namespace kelvane
