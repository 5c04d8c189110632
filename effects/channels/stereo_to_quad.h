// "Convert stereo to 4 channels": the front pair is repeated at the back.
#pragma once

#include "frame/effect_base.h"
#include "frame/sample_buffer.h"
#include "velmora/channel_mask.h"

#include <string_view>

namespace kelvane {

/// A stereo block (front left, front right) becomes quadraphonic: the pair in front and the same pair at the back.
/// Samples are copied, never scaled. Other blocks pass.
class stereo_to_quad final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0x7AAB4CE8, 0x414A, 0x427E, {0x82, 0x28, 0x78, 0xCD, 0x4A, 0x47, 0x38, 0x8F}};
    static constexpr std::string_view display_name = "Convert stereo to 4 channels";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override {
        if (!is_stereo(*block) || !has_samples(*block)) {
            return true;
        }
        const std::span<const double> stereo = samples_of(*block);
        const std::size_t frames = stereo.size() / 2;
        const std::span<double> quad = buffer_.grow_to_frames(frames, 4);
        for (std::size_t frame = 0; frame < frames; ++frame) {
            quad[4 * frame] = quad[4 * frame + 2] = stereo[2 * frame];
            quad[4 * frame + 1] = quad[4 * frame + 3] = stereo[2 * frame + 1];
        }
        rewrite_block(*block, quad.data(), frames, 4, velmora::layout::quad);
        return true;
    }

private:
    sample_buffer buffer_;
};

} // namespace kelvane
