// The settings dialog of "Resampler (dBpoweramp/SSRC)", handed back by OK.
#pragma once

#include "effects/resampler_common/rate_entry.h"
#include "effects/resampler_ssrc/ssrc_settings.h"

#include <string>

namespace velmora {
class effect_preset;
class preset_change_callback;
} // namespace velmora

namespace kelvane {

/// What the dialog opens with: the settings of the preset, and the defaults for a preset of another effect or whatever
/// fails while one is read.
ssrc_settings open_in_ssrc_dialog(const velmora::effect_preset& opening) noexcept;

/// What the controls show.
struct ssrc_dialog_content {
    rate_entry rate;
    bool excludes;
    std::string exclusions; ///< as typed
};

ssrc_dialog_content show_in_ssrc_dialog(const ssrc_settings& settings);

/// What the controls stand for: the rate, kept within 1000 and 384000, which is narrower than what a preset may hold.
ssrc_settings read_ssrc_dialog(const ssrc_dialog_content& content);

/// Runs the dialog. OK reports the settings that it shows then, once; any other end reports nothing. Throws
/// `exception_not_implemented` where there are no dialogs.
void show_ssrc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback);

} // namespace kelvane
