// What the up-mixers and the layout effects share.
#pragma once

#include "effects/channels/channel_matrix_core.h"
#include "frame/effect_base.h"
#include "frame/sample_buffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelvane {

/// Multiplies every frame by a matrix that is made anew whenever the input's mask changes. A mask that does not fit
/// the channel count is corrected first, in the block too, so that later effects see the same speakers.
///
/// Blocks that have the target's mask already pass, and so do those that the matrix cannot be made for. Throws
/// `velmora_io::exception_io_data` for more than 32 channels.
class channel_matrix_effect : public basic_effect<velmora::matrix_effect_instance> {
public:
    explicit channel_matrix_effect(std::uint32_t target_mask) noexcept;

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    bool rebuild_matrix() final;

protected:
    std::uint32_t target_mask() const noexcept { return target_mask_; }

private:
    /// The matrix from the input's speakers to the target's; nothing when there is none. `inputs` is the channel count.
    virtual std::optional<channel_matrix> make_matrix(std::uint32_t input_mask, std::size_t inputs) const = 0;

    void follow_layout(std::uint32_t input_mask, std::uint32_t channels);
    void mix(velmora::sample_block& block);

    std::uint32_t target_mask_;
    std::uint32_t input_mask_ = 0;
    std::uint32_t input_channels_ = 0;
    bool can_mix_ = false;
    channel_mixer mixer_;
    sample_buffer buffer_;
};

} // namespace kelvane
