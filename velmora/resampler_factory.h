// The questions that the host asks a sample-rate converter.
#pragma once

#include "velmora/effect_factory.h"

#include <stdint.h>

namespace velmora {

/// Answers to this identity and to those of its bases.
class resampler_factory : public effect_factory_with_dialog {
public:
    static constexpr guid class_id{0x5B8E3A54, 0x7C1D, 0x4F0A, {0x9B, 0x62, 0x0D, 0x7F, 0x6C, 0x2A, 0x91, 0xE4}};

    /// Whether the converter turns `source_rate` into `target_rate`, both in Hz. [any-thread]
    virtual bool is_conversion_supported(uint32_t source_rate, uint32_t target_rate) = 0;

    /// Sets `out` to the preset for a target rate in Hz and a quality from 0 (lowest) to 1 (highest); a converter
    /// without levels ignores the quality. May throw a bad allocation. [any-thread]
    virtual void make_preset(effect_preset* out, uint32_t target_rate, double quality) = 0;

protected:
    ~resampler_factory() = default;
};

} // namespace velmora
