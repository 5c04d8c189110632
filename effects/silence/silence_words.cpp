#include "effects/silence/silence_words.h"

#include "effects/silence/silence_settings.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr std::uint32_t shortest_that_cuts_ms = 150; // from here on it rounds to two segments

std::string range_of_minima() {
    using settings = skip_silence_settings;
    using limits = std::numeric_limits<std::uint32_t>;
    return "a whole number from " + range_text(limits::min(), limits::max()) + " (" +
           range_text(settings::shortest_dialog_minimum_ms, settings::longest_dialog_minimum_ms) + " in the dialog)";
}

std::string range_of_thresholds() {
    using settings = skip_silence_settings;
    return "a whole number of 32 bits (" +
           range_text(settings::lowest_dialog_threshold_db, settings::highest_dialog_threshold_db) + " in the dialog)";
}

/// A minimum of one segment: each silent segment is the last one known when it is released, and so none is dropped.
std::string warn_of_no_cut(const skip_silence_settings& settings, std::uint32_t) {
    if (settings.minimum_ms >= shortest_that_cuts_ms) {
        return "";
    }
    return "a minimum below " + std::to_string(shortest_that_cuts_ms) + " ms cuts nothing";
}

} // namespace

std::unique_ptr<settings_words> silence_words() {
    using settings = skip_silence_settings;
    std::vector<described_field<settings>> fields{
        number_field({.name = "min_ms",
                      .unit = "ms",
                      .range = range_of_minima(),
                      .meaning = "how long a silence must last to be cut"},
                     &settings::minimum_ms),
        number_field({.name = "threshold_db",
                      .unit = "dB",
                      .range = range_of_thresholds(),
                      .meaning = "what stays below this level is silence"},
                     &settings::threshold_db),
        yes_no_field({.name = "keep_initial",
                      .unit = "",
                      .range = "yes or no",
                      .meaning = "whether a silence that is cut keeps its first part, as long as min_ms"},
                     &settings::keeps_initial),
    };
    return std::make_unique<struct_words<settings>>(std::move(fields), warn_of_no_cut);
}

} // namespace kelvane
