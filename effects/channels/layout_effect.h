// The two effects that the host makes for itself when it needs audio in a given layout.
#pragma once

#include "effects/channels/channel_matrix_effect.h"
#include "effects/channels/layout_core.h"
#include "effects/channels/layout_settings.h"

namespace kelvane {

class layout_effect : public channel_matrix_effect {
public:
    explicit layout_effect(const layout_settings& chosen) noexcept : channel_matrix_effect(chosen.target_mask) {}

private:
    std::optional<channel_matrix> make_matrix(std::uint32_t input_mask, std::size_t inputs) const final {
        return make_layout_matrix(input_mask, inputs, target_mask());
    }
};

/// Turns every block into exactly the requested layout.
class layout_converter final : public layout_effect {
public:
    using settings = layout_converter_settings;
    using layout_effect::layout_effect;
};

/// Takes away the speakers that the requested layout lacks: blocks without such speakers pass, be their mask right or
/// wrong, and all others are turned into the requested layout.
class layout_limiter final : public layout_effect {
public:
    using settings = layout_limiter_settings;
    using layout_effect::layout_effect;

    bool on_block(velmora::sample_block* block, velmora::abort_signal* abort) override {
        const bool has_more = (block->get_channel_mask() & ~target_mask()) != 0;
        return !has_more || layout_effect::on_block(block, abort);
    }
};

} // namespace kelvane
