#include "effects/resampler_ssrc/ssrc_dialog.h"

#include "effects/resampler_common/target_rates.h"
#include "frame/preset_payload.h"

namespace kelvane {

namespace {

constexpr rate_limits limits{.lowest_hz = min_target_rate_hz, .highest_hz = 384'000};

} // namespace

ssrc_settings open_in_ssrc_dialog(const velmora::effect_preset& opening) noexcept {
    try {
        return settings_or_defaults<ssrc_settings>(opening);
    } catch (...) {
        return {};
    }
}

ssrc_dialog_content show_in_ssrc_dialog(const ssrc_settings& settings) {
    return {
        .rate = show_rate(settings.target_rate_hz), .excludes = settings.excludes, .exclusions = settings.exclusions};
}

ssrc_settings read_ssrc_dialog(const ssrc_dialog_content& content) {
    return {.target_rate_hz = read_rate(content.rate, limits),
            .excludes = content.excludes,
            .exclusions = content.exclusions};
}

} // namespace kelvane
