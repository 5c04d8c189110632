#include "effects/resampler_sinc/sinc_dialog.h"

#include "effects/resampler_common/target_rates.h"
#include "effects/resampler_sinc/sinc_quality_core.h"

namespace kelvane {

namespace {

constexpr rate_limits limits{.lowest_hz = min_target_rate_hz, .highest_hz = max_target_rate_hz};

bool is_in_list(int quality) {
    return quality >= 0 && quality < static_cast<int>(sinc_qualities.size());
}

} // namespace

sinc_dialog_content show_in_sinc_dialog(const sinc_settings& settings) {
    const int quality = static_cast<int>(settings.quality);
    return {.rate = show_rate(settings.target_rate_hz),
            .quality = is_in_list(quality) ? quality : static_cast<int>(normal_sinc_quality),
            .excludes = settings.excludes,
            .exclusions = settings.exclusions};
}

sinc_settings read_sinc_dialog(const sinc_dialog_content& content) {
    return {.target_rate_hz = read_rate(content.rate, limits),
            .quality = is_in_list(content.quality) ? static_cast<std::uint32_t>(content.quality) : 0,
            .excludes = content.excludes,
            .exclusions = content.exclusions};
}

} // namespace kelvane
