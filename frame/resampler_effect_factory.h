// The factory of every sample-rate converter.
#pragma once

#include "frame/settings_effect_factory.h"
#include "velmora/resampler_factory.h"

#include <cstdint>

namespace kelvane {

/// What `settings_effect_factory` asks for, and: `Effect` has the static function `is_conversion_supported` (source and
/// target rate in Hz), its settings the static function `for_rate` (target rate in Hz, quality from 0 to 1).
template <class Effect, auto show_dialog>
class resampler_effect_factory final
    : public basic_settings_factory<Effect, show_dialog, velmora::resampler_factory,
                                    velmora::effect_factory_with_dialog, velmora::effect_factory> {
public:
    bool is_conversion_supported(std::uint32_t source_rate, std::uint32_t target_rate) override {
        return Effect::is_conversion_supported(source_rate, target_rate);
    }

    void make_preset(velmora::effect_preset* out, std::uint32_t target_rate, double quality) override {
        write_settings(*out, Effect::settings::for_rate(target_rate, quality));
    }
};

} // namespace kelvane
