// "Move stereo to rear channels": the front pair becomes the back pair.
#pragma once

#include "frame/effect_base.h"
#include "velmora/channel_mask.h"

#include <string_view>

namespace kelvane {

/// Relabels a stereo block (front left, front right) as back left and back right; the samples are not touched. Other
/// blocks pass.
class move_stereo_to_rear final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0xE24420A0, 0x5DC6, 0x4EE1, {0x8A, 0xE2, 0x02, 0x45, 0x2E, 0x8D, 0x8D, 0xFB}};
    static constexpr std::string_view display_name = "Move stereo to rear channels";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override {
        if (is_stereo(*block) && has_samples(*block)) {
            block->set_channels(2, velmora::layout::rear_pair);
        }
        return true;
    }
};

} // namespace kelvane
