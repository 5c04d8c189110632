// Platforms without dialogs.
#include "effects/resampler_ssrc/ssrc_dialog.h"
#include "frame/exceptions.h"

namespace kelvane {

void show_ssrc_dialog(const velmora::effect_preset&, void*, velmora::preset_change_callback&) {
    throw mox::exception_not_implemented();
}

} // namespace kelvane
