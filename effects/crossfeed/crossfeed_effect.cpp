#include "effects/crossfeed/crossfeed_effect.h"

namespace kelvane {

bool crossfeed_filter::on_block(velmora::sample_block* block, velmora::abort_signal*) {
    if (!has_samples(*block)) {
        return true;
    }
    if (block->get_channels() != 2) {
        flush();
        return true;
    }
    const std::uint32_t rate_hz = block->get_sample_rate();
    if (rate_hz != 0) { // the base takes a block without a rate out; one that comes directly leaves the filter alone
        follow_rate(rate_hz);
        core_->process(mutable_samples_of(*block));
    }
    return true;
}

void crossfeed_filter::flush() {
    if (core_) {
        core_->reset();
    }
}

void crossfeed_filter::follow_rate(std::uint32_t rate_hz) {
    if (rate_hz != rate_hz_) {
        rate_hz_ = rate_hz;
        core_.emplace(strength_, rate_hz);
    }
}

} // namespace kelvane
