// The working buffer of an effect.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <utility>

namespace kelvane {

/// An array of 64-bit samples that grows to the largest need seen so far, so that steady-state processing allocates
/// nothing. New samples have no defined value; old ones are kept.
///
/// Rationale for malloc and not `new`: a size that cannot be had must end in the module's own "bad allocation", which
/// the standard library's operator words differently from vendor to vendor.
class sample_buffer {
public:
    sample_buffer() = default;
    sample_buffer(sample_buffer&& other) noexcept
        : samples_(std::move(other.samples_)), capacity_(std::exchange(other.capacity_, 0)) {}
    sample_buffer& operator=(sample_buffer&& other) noexcept {
        samples_ = std::move(other.samples_);
        capacity_ = std::exchange(other.capacity_, 0);
        return *this;
    }

    /// Makes room for `samples` samples. Never shrinks, save that 0 frees the buffer.
    /// Throws `bad_allocation` when the size in bytes overflows or memory is short; the buffer is then unchanged.
    void grow(std::size_t samples);

    /// `grow` to `frames` × `channels` samples, with the product checked too, and the first that many of them.
    std::span<double> grow_to_frames(std::size_t frames, std::size_t channels);

    double* data() noexcept { return samples_.get(); }
    const double* data() const noexcept { return samples_.get(); }

    /// In samples.
    std::size_t capacity() const noexcept { return capacity_; }

private:
    struct freeing {
        void operator()(double* memory) const noexcept { std::free(memory); }
    };
    std::unique_ptr<double[], freeing> samples_;
    std::size_t capacity_ = 0;
};

} // namespace kelvane
