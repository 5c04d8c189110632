// The settings dialog of "Resampler (RetroArch)", heard at once.
#pragma once

#include "effects/resampler_common/rate_entry.h"
#include "effects/resampler_sinc/sinc_settings.h"

#include <string>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// What the controls show.
struct sinc_dialog_content {
    rate_entry rate;
    int quality; ///< index in the list of qualities, -1 when none is selected
    bool excludes;
    std::string exclusions; ///< as typed
};

/// What the dialog shows of stored settings; a quality without a row shows as the one that it counts as.
sinc_dialog_content show_in_sinc_dialog(const sinc_settings& settings);

/// What the controls stand for: the rate, kept within 1000 and 20000000; quality 0 when none of the list is selected.
sinc_settings read_sinc_dialog(const sinc_dialog_content& content);

/// Runs the dialog. Every change is reported, and OK reports the current settings once more; any other end reports the
/// opening preset. An exception of the callback closes the dialog and comes out behind it. Throws
/// `exception_not_implemented` where there are no dialogs.
void show_sinc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback);

} // namespace kelvane
