#include "effects/crossfade/sample_ring_core.h"

#include <algorithm>

namespace kelvane {

std::span<const double> sample_ring::displaced_by(std::size_t count) const noexcept {
    const std::size_t needed = fill_ + count;
    if (needed <= capacity()) {
        return {};
    }
    // They end where the piece will end: a ring that is not full has its oldest samples right behind the free room.
    const std::size_t displaced = needed - capacity();
    return storage_.subspan(write_position_ + count - displaced, displaced);
}

void sample_ring::write(std::span<const double> samples) noexcept {
    std::copy(samples.begin(), samples.end(), storage_.subspan(write_position_).begin());
    skip(samples.size());
}

void sample_ring::skip(std::size_t count) noexcept {
    write_position_ += count;
    if (write_position_ == capacity()) {
        write_position_ = 0;
    }
    fill_ = std::min(capacity(), fill_ + count);
}

std::span<const double> sample_ring::oldest() const noexcept {
    const std::size_t start = fill_ <= write_position_ ? write_position_ - fill_ : write_position_ + capacity() - fill_;
    return storage_.subspan(start, std::min(fill_, capacity() - start));
}

} // namespace kelvane
