// The settings dialog of "Resampler (dBpoweramp/SSRC)", heard at OK.
#pragma once

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// Runs the dialog. Only OK reports. Throws `exception_not_implemented` where there are no dialogs.
void show_ssrc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback);

} // namespace kelvane
