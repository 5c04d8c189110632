// "Downmix channels to stereo" and "Downmix channels to mono".
#pragma once

#include "effects/channels/downmix_core.h"
#include "frame/effect_base.h"
#include "frame/sample_buffer.h"

#include <string_view>

namespace kelvane {

/// Blocks that are stereo or mono already pass, and so do those with a speaker above side right or with a mask that
/// does not fit the channel count. All others become front left and front right.
class downmix_to_stereo final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0x866233BB, 0xC466, 0x43E6, {0xAF, 0xC4, 0x8B, 0x7B, 0xE5, 0x63, 0xD9, 0x12}};
    static constexpr std::string_view display_name = "Downmix channels to stereo";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;

private:
    sample_buffer buffer_;
};

/// Blocks that are mono already pass, and so do those that the stereo down-mix cannot fold. All others, stereo too,
/// become front centre.
class downmix_to_mono final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0xEFC441DD, 0xC7B4, 0x4F34, {0x97, 0x4A, 0xD3, 0x05, 0x8F, 0x3A, 0x1B, 0xDE}};
    static constexpr std::string_view display_name = "Downmix channels to mono";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;

private:
    sample_buffer buffer_;
};

} // namespace kelvane
