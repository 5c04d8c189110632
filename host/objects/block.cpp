#include "host/objects/block.h"

namespace host {

block::block(std::span<const double> samples, std::uint32_t sample_rate_hz, std::uint32_t channels,
             std::uint32_t channel_mask)
    : samples_(samples.begin(), samples.end()), frames_(channels == 0 ? 0 : samples.size() / channels),
      sample_rate_hz_(sample_rate_hz), channels_(channels), channel_mask_(channel_mask) {}

void block::set_data_size(std::size_t samples) {
    if (samples > samples_.size()) {
        samples_.resize(samples);
    }
}

void block::set_channels(std::uint32_t count, std::uint32_t mask) {
    channels_ = count;
    channel_mask_ = mask;
}

} // namespace host
