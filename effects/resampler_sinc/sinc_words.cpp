#include "effects/resampler_sinc/sinc_words.h"

#include "effects/resampler_common/exclude_field.h"
#include "effects/resampler_common/target_rates.h"
#include "effects/resampler_sinc/sinc_quality_core.h"
#include "effects/resampler_sinc/sinc_settings.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool are_same_name(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return lower(left) == lower(right); });
}

/// By name, capitals or not, or by index.
std::optional<std::uint32_t> parse_quality(std::string_view text) {
    for (std::uint32_t index = 0; index < sinc_qualities.size(); ++index) {
        if (are_same_name(text, sinc_qualities[index].name) || text == std::to_string(index)) {
            return index;
        }
    }
    return std::nullopt;
}

std::string show_quality(const sinc_settings& settings) {
    const bool has_name = settings.quality < sinc_qualities.size();
    return has_name ? sinc_qualities[settings.quality].name : std::to_string(settings.quality);
}

std::string range_of_qualities() {
    std::string names;
    for (const sinc_quality& quality : sinc_qualities) {
        names += std::string(quality.name) + ", ";
    }
    return names + "or " + range_text(0, sinc_qualities.size() - 1);
}

described_field<sinc_settings> quality_field() {
    return {{.name = "quality",
             .unit = "",
             .range = range_of_qualities(),
             .meaning = "how exact the conversion is, and how much work"},
            show_quality,
            [](sinc_settings& settings, std::string_view text) {
                const auto quality = parse_quality(text);
                settings.quality = quality.value_or(settings.quality);
                return quality.has_value();
            }};
}

} // namespace

std::unique_ptr<settings_words> sinc_words() {
    std::vector<described_field<sinc_settings>> fields{
        number_field({.name = "rate",
                      .unit = "Hz",
                      .range = "a whole number of 32 bits (" + range_text(min_target_rate_hz, max_target_rate_hz) +
                               " in the dialog)",
                      .meaning = "the sample rate of the output"},
                     &sinc_settings::target_rate_hz),
        quality_field(),
        exclude_field<sinc_settings>(),
    };
    return std::make_unique<struct_words<sinc_settings>>(
        std::move(fields), [](const sinc_settings& settings, std::uint32_t) { return warning_of_exclusions(settings); },
        wanted_rate_hz<sinc_settings>);
}

} // namespace kelvane
