#include "effects/channels/downmix_effect.h"

#include "velmora/channel_mask.h"

namespace kelvane {

namespace {

/// Folds the block by the matrix for its layout into `Outputs` channels of `output_mask`; leaves it when there is no
/// such matrix.
template <std::size_t Outputs>
void fold(velmora::sample_block& block, std::uint32_t output_mask, sample_buffer& buffer) {
    const auto matrix = downmix_matrix<Outputs>::make(block.get_channel_mask(), block.get_channels());
    if (!matrix || !has_samples(block)) {
        return;
    }
    const std::size_t frames = block.get_sample_count();
    const std::span<double> mixed = buffer.grow_to_frames(frames, Outputs);
    matrix->mix(samples_of(block), mixed);
    rewrite_block(block, mixed.data(), frames, Outputs, output_mask);
}

} // namespace

bool downmix_to_stereo::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    const std::uint32_t mask = block->get_channel_mask();
    if (mask != velmora::layout::stereo && mask != velmora::layout::mono) {
        fold<2>(*block, velmora::layout::stereo, buffer_);
    }
    return true;
}

bool downmix_to_mono::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (block->get_channel_mask() != velmora::layout::mono) {
        fold<1>(*block, velmora::layout::mono, buffer_);
    }
    return true;
}

} // namespace kelvane
