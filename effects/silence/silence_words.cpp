#include "effects/silence/silence_words.h"

#include "effects/silence/silence_settings.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr std::uint32_t shortest_that_cuts_ms = 150; // from here on it rounds to two segments

/// A minimum of one segment: each silent segment is the last one known when it is released, and so none is dropped.
std::string warn_of_no_cut(const skip_silence_settings& settings, std::uint32_t) {
    if (settings.minimum_ms >= shortest_that_cuts_ms) {
        return "";
    }
    return "a minimum below 150 ms cuts nothing";
}

} // namespace

std::unique_ptr<settings_words> silence_words() {
    using settings = skip_silence_settings;
    std::vector<described_field<settings>> fields{
        number_field({.name = "min_ms",
                      .unit = "ms",
                      .range = "a whole number from 0 to 4294967295 (200 to 20000 in the dialog)",
                      .meaning = "how long a silence must last to be cut"},
                     &settings::minimum_ms),
        number_field({.name = "threshold_db",
                      .unit = "dB",
                      .range = "a whole number of 32 bits (-100 to -20 in the dialog)",
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
