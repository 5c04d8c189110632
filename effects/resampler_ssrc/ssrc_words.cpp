#include "effects/resampler_ssrc/ssrc_words.h"

#include "effects/resampler_common/exclude_field.h"
#include "effects/resampler_common/target_rates.h"
#include "effects/resampler_ssrc/ssrc_settings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

bool change_rate(ssrc_settings& settings, std::string_view text) {
    const auto rate_hz = parse_number(text);
    const bool is_taken = rate_hz && is_target_rate(*rate_hz);
    if (is_taken) {
        settings.target_rate_hz = static_cast<std::uint32_t>(*rate_hz);
    }
    return is_taken;
}

described_field<ssrc_settings> rate_field() {
    return {{.name = "rate",
             .unit = "Hz",
             .range = range_text(min_target_rate_hz, max_target_rate_hz),
             .meaning = "the sample rate of the output"},
            [](const ssrc_settings& settings) { return std::to_string(settings.target_rate_hz); },
            change_rate};
}

} // namespace

std::unique_ptr<settings_words> ssrc_words() {
    std::vector<described_field<ssrc_settings>> fields{rate_field(), exclude_field<ssrc_settings>()};
    return std::make_unique<struct_words<ssrc_settings>>(
        std::move(fields), [](const ssrc_settings& settings, std::uint32_t) { return warning_of_exclusions(settings); },
        wanted_rate_hz<ssrc_settings>);
}

} // namespace kelvane
