#include "effects/crossfeed/crossfeed_words.h"

#include "effects/crossfeed/crossfeed_settings.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

std::string range_of_strengths() {
    using settings = crossfeed_settings;
    const std::string step = std::to_string(settings::dialog_strength_step);
    return "a whole number of 32 bits (" +
           range_text(settings::lowest_dialog_strength, settings::highest_dialog_strength) + " in steps of " + step +
           " in the dialog, shown there divided by " + step + ")";
}

/// The loop's gain is strength over rate for each side.
std::string warn_of_divergence(const crossfeed_settings& settings, std::uint32_t rate_hz) {
    if (2 * std::int64_t{settings.strength} <= rate_hz) {
        return "";
    }
    return "at " + std::to_string(rate_hz) + " Hz a strength above " + std::to_string(rate_hz / 2) + " diverges";
}

} // namespace

std::unique_ptr<settings_words> crossfeed_words() {
    std::vector<described_field<crossfeed_settings>> fields{
        number_field({.name = "strength",
                      .unit = "",
                      .range = range_of_strengths(),
                      .meaning = "how much of the difference of left and right comes back"},
                     &crossfeed_settings::strength),
    };
    return std::make_unique<struct_words<crossfeed_settings>>(std::move(fields), warn_of_divergence);
}

} // namespace kelvane
