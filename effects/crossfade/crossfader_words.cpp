#include "effects/crossfade/crossfader_words.h"

#include "effects/crossfade/crossfader_settings.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

std::string range_of_fades() {
    using settings = crossfader_settings;
    return "a whole number of 32 bits (" +
           range_text(settings::shortest_dialog_fade_ms, settings::longest_dialog_fade_ms) + " in the dialog, " +
           range_text(settings::shortest_fade_ms, settings::longest_fade_ms) + " in effect)";
}

std::string warn_of_another_length(const crossfader_settings& settings, std::uint32_t) {
    const std::uint32_t made_ms =
        std::clamp(settings.fade_ms, crossfader_settings::shortest_fade_ms, crossfader_settings::longest_fade_ms);
    if (made_ms == settings.fade_ms) {
        return "";
    }
    return "a fade of " + std::to_string(settings.fade_ms) + " ms is made as one of " + std::to_string(made_ms) + " ms";
}

} // namespace

std::unique_ptr<settings_words> crossfader_words() {
    std::vector<described_field<crossfader_settings>> fields{
        number_field({.name = "ms",
                      .unit = "ms",
                      .range = range_of_fades(),
                      .meaning = "how long the end of a track and the start of the next overlap"},
                     &crossfader_settings::fade_ms),
    };
    return std::make_unique<struct_words<crossfader_settings>>(std::move(fields), warn_of_another_length);
}

} // namespace kelvane
