// Platforms without dialogs.
#include "effects/resampler_sinc/sinc_dialog.h"
#include "frame/exceptions.h"

namespace kelvane {

void show_sinc_dialog(const velmora::effect_preset&, void*, velmora::preset_change_callback&) {
    throw mox::exception_not_implemented();
}

} // namespace kelvane
