#include "effects/crossfade/crossfader_dialog.h"

#include <algorithm>

namespace kelvane {

int crossfader_position(std::uint32_t fade_ms) {
    return static_cast<int>(
        std::clamp(fade_ms, crossfader_settings::shortest_dialog_fade_ms, crossfader_settings::longest_dialog_fade_ms));
}

crossfader_settings crossfader_settings_at(int position) {
    return {static_cast<std::uint32_t>(position)};
}

} // namespace kelvane
