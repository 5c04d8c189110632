// "Upmix to 5.1" and "Upmix to 7.1".
#pragma once

#include "effects/channels/channel_matrix_effect.h"
#include "effects/channels/upmix_core.h"
#include "velmora/channel_mask.h"

#include <string_view>

namespace kelvane {

/// Spreads a smaller layout over the target's. A layout with speakers that the target lacks passes unchanged.
class upmix_effect : public channel_matrix_effect {
public:
    using channel_matrix_effect::channel_matrix_effect;

private:
    std::optional<channel_matrix> make_matrix(std::uint32_t input_mask, std::size_t inputs) const final {
        return make_upmix_matrix(input_mask, inputs, target_mask());
    }
};

class upmix_5_1 final : public upmix_effect {
public:
    static constexpr velmora::guid identity{
        0xABA20225, 0x956A, 0x45D9, {0x93, 0xD6, 0x9F, 0xDC, 0x8B, 0x9B, 0x46, 0x33}};
    static constexpr std::string_view display_name = "Upmix to 5.1";

    upmix_5_1() noexcept : upmix_effect(velmora::layout::surround_5_1) {}
};

class upmix_7_1 final : public upmix_effect {
public:
    static constexpr velmora::guid identity{
        0x66131A69, 0x35E4, 0x4323, {0x83, 0xB0, 0x07, 0x37, 0x59, 0x5D, 0x85, 0x07}};
    static constexpr std::string_view display_name = "Upmix to 7.1";

    upmix_7_1() noexcept : upmix_effect(velmora::layout::surround_7_1) {}
};

} // namespace kelvane
