// Instances of "Resampler (dBpoweramp/SSRC)" from presets made by hand.
#pragma once

#include "tests/module/sinc_preset.h"

namespace testing_support {

inline constexpr auto ssrc_name = "Resampler (dBpoweramp/SSRC)";

/// Laid out as the other resampler's, with nothing in the place of the quality.
inline std::vector<std::uint8_t> ssrc_payload(std::uint32_t target_hz, bool excludes = false,
                                              const std::string& exclusions = "") {
    return sinc_payload(target_hz, 0, excludes, exclusions);
}

inline host::service_ptr<velmora::effect_instance> make_ssrc(const std::vector<std::uint8_t>& payload) {
    const host::effect_entry& effect = built_effects().find(ssrc_name);
    host::preset settings = effect.default_preset;
    settings.set_data(payload.data(), payload.size());
    return host::instantiate(effect, settings);
}

inline host::service_ptr<velmora::effect_instance> make_ssrc(std::uint32_t target_hz) {
    return make_ssrc(ssrc_payload(target_hz));
}

} // namespace testing_support
