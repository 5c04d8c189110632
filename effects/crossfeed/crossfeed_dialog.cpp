#include "effects/crossfeed/crossfeed_dialog.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr std::int32_t strength_per_position = 100;

} // namespace

int crossfeed_position(std::int32_t strength) {
    return std::clamp(strength / strength_per_position, lowest_crossfeed_position, highest_crossfeed_position);
}

crossfeed_settings crossfeed_settings_at(int position) {
    return {position * strength_per_position};
}

} // namespace kelvane
