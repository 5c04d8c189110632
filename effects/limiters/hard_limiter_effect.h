// "Hard -6dB limiter": a soft clipper without memory.
#pragma once

#include "effects/limiters/hard_limiter_core.h"
#include "frame/effect_base.h"

#include <string_view>

namespace kelvane {

/// Applies the curve to every sample of every channel in place. No latency, no state.
class hard_limiter final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0xCB592C20, 0x2E33, 0x4972, {0x92, 0x5F, 0x3F, 0xBB, 0x6B, 0xDB, 0xA9, 0xBF}};
    static constexpr std::string_view display_name = "Hard -6dB limiter";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override {
        if (has_samples(*block)) {
            soft_clip(mutable_samples_of(*block));
        }
        return true;
    }
};

} // namespace kelvane
