#include "effects/crossfeed/crossfeed_dialog.h"

#include <algorithm>

namespace kelvane {

int crossfeed_position(std::int32_t strength) {
    return std::clamp(strength / crossfeed_settings::dialog_strength_step, lowest_crossfeed_position,
                      highest_crossfeed_position);
}

crossfeed_settings crossfeed_settings_at(int position) {
    return {position * crossfeed_settings::dialog_strength_step};
}

} // namespace kelvane
