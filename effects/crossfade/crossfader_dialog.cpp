#include "effects/crossfade/crossfader_dialog.h"

#include <algorithm>

namespace kelvane {

int crossfader_position(std::uint32_t fade_ms) {
    constexpr auto lowest = static_cast<std::uint32_t>(lowest_crossfader_position);
    constexpr auto highest = static_cast<std::uint32_t>(highest_crossfader_position);
    return static_cast<int>(std::clamp(fade_ms, lowest, highest));
}

crossfader_settings crossfader_settings_at(int position) {
    return {static_cast<std::uint32_t>(position)};
}

} // namespace kelvane
