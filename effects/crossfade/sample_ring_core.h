// The newest samples of a stream.
#pragma once

#include <cstddef>
#include <span>

namespace kelvane {

/// A ring in borrowed storage. It knows no frames: capacity and writes that are whole frames keep them whole. All
/// pieces that it takes and gives are contiguous, so they end at the end of the storage at the latest.
class sample_ring {
public:
    /// A ring without room.
    sample_ring() = default;

    /// An empty ring over the whole of `storage`, which must outlive it.
    explicit sample_ring(std::span<double> storage) noexcept : storage_(storage) {}

    std::size_t capacity() const noexcept { return storage_.size(); }

    /// Samples held, at most the capacity.
    std::size_t fill() const noexcept { return fill_; }

    /// The longest piece that can be written now; above 0 unless the capacity is 0.
    std::size_t writable() const noexcept { return storage_.size() - write_position_; }

    /// The samples that writing `count` samples (at most `writable()`) takes the place of: the oldest, oldest first,
    /// and none while there is room. Valid until the next write.
    std::span<const double> displaced_by(std::size_t count) const noexcept;

    /// Takes up at most `writable()` samples; `displaced_by` as many are gone then.
    void write(std::span<const double> samples) noexcept;

    /// The oldest samples, oldest first, up to the end of the storage: when more than these are held, the rest follows
    /// once they are dropped. Empty when nothing is held. Valid until the next write.
    std::span<const double> oldest() const noexcept;

    /// Moves on as `write` of `count` samples does, and leaves the storage as it is: on a copy of the ring it tells
    /// what is to come.
    void skip(std::size_t count) noexcept;

    /// Forgets the oldest `count` samples (at most the fill).
    void drop_oldest(std::size_t count) noexcept { fill_ -= count; }

private:
    std::span<double> storage_;
    std::size_t write_position_ = 0; ///< below the capacity
    std::size_t fill_ = 0;
};

} // namespace kelvane
