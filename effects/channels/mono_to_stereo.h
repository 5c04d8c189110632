// "Convert mono to stereo": one channel becomes two equal ones.
#pragma once

#include "frame/effect_base.h"
#include "frame/sample_buffer.h"
#include "velmora/channel_mask.h"

#include <string_view>

namespace kelvane {

/// Any block of one channel, whatever its mask says, becomes front left and front right. Samples are copied, never
/// scaled. Other blocks pass.
class mono_to_stereo final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0xF661D118, 0x5627, 0x40AD, {0xAB, 0x31, 0xCC, 0xCF, 0x71, 0xA4, 0x81, 0x9D}};
    static constexpr std::string_view display_name = "Convert mono to stereo";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override {
        if (block->get_channels() != 1 || !has_samples(*block)) {
            return true;
        }
        const std::span<const double> mono = samples_of(*block);
        const std::span<double> stereo = buffer_.grow_to_frames(mono.size(), 2);
        for (std::size_t frame = 0; frame < mono.size(); ++frame) {
            stereo[2 * frame] = stereo[2 * frame + 1] = mono[frame];
        }
        rewrite_block(*block, stereo.data(), mono.size(), 2, velmora::layout::stereo);
        return true;
    }

private:
    sample_buffer buffer_;
};

} // namespace kelvane
