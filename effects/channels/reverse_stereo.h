// "Reverse stereo channels": left and right change places.
#pragma once

#include "frame/effect_base.h"
#include "velmora/channel_mask.h"

#include <string_view>
#include <utility>

namespace kelvane {

/// Swaps the two samples of every frame of a stereo block (front left, front right) in place. Other blocks pass.
class reverse_stereo final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0x45BAE3C0, 0x10B1, 0x4008, {0xBA, 0xAC, 0xC5, 0xE6, 0xCE, 0xB0, 0x6B, 0xA2}};
    static constexpr std::string_view display_name = "Reverse stereo channels";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override {
        if (!is_stereo(*block) || !has_samples(*block)) {
            return true;
        }
        const std::span<double> samples = mutable_samples_of(*block);
        for (std::size_t left = 0; left < samples.size(); left += 2) {
            std::swap(samples[left], samples[left + 1]);
        }
        return true;
    }
};

} // namespace kelvane
