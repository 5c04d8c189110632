#include "effects/channels/channel_matrix_effect.h"

#include "effects/channels/default_mask_core.h"
#include "frame/blocks.h"
#include "frame/exceptions.h"

#include <algorithm>

namespace kelvane {

namespace {

/// The mask of the block, which is written back when it had to be corrected.
std::uint32_t correct_mask(velmora::sample_block& block) {
    const std::uint32_t channels = block.get_channels();
    if (channels > max_masked_channels) {
        throw velmora_io::exception_io_data();
    }
    const std::uint32_t channel_mask = block.get_channel_mask();
    const std::uint32_t corrected = corrected_mask(channel_mask, channels);
    if (corrected != channel_mask) {
        block.set_channels(channels, corrected);
    }
    return corrected;
}

} // namespace

channel_matrix_effect::channel_matrix_effect(std::uint32_t target_mask) noexcept : target_mask_(target_mask) {}

bool channel_matrix_effect::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    const std::uint32_t channels = block->get_channels();
    const bool claims_samples = channels != 0 && block->get_sample_count() != 0;
    if (claims_samples && !has_samples(*block)) {
        return true;
    }
    const std::uint32_t input_mask = correct_mask(*block);
    if (channels == 0 || input_mask == target_mask_) {
        return true;
    }
    follow_layout(input_mask, channels);
    if (can_mix_ && claims_samples) {
        mix(*block);
    }
    return true;
}

void channel_matrix_effect::follow_layout(std::uint32_t input_mask, std::uint32_t channels) {
    if (input_mask != input_mask_) {
        input_mask_ = input_mask;
        input_channels_ = channels;
        can_mix_ = rebuild_matrix();
    }
}

bool channel_matrix_effect::rebuild_matrix() {
    const auto matrix = make_matrix(input_mask_, input_channels_);
    if (matrix) {
        mixer_ = channel_mixer(*matrix);
    }
    return matrix.has_value();
}

void channel_matrix_effect::mix(velmora::sample_block& block) {
    const std::size_t frames = block.get_sample_count();
    const std::span<double> unmixed = buffer_.grow_to_frames(frames, mixer_.inputs());
    const std::span<const double> samples = samples_of(block);
    std::copy(samples.begin(), samples.end(), unmixed.begin());
    rewrite_block(block, frames, static_cast<std::uint32_t>(mixer_.outputs()), target_mask_,
                  [&](std::span<double> mixed) { mixer_.mix(unmixed, mixed); });
}

} // namespace kelvane
