// Arrays of numbers for the converter.
#pragma once

#include "frame/exceptions.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

namespace kelvane::ssrc {

/// A fixed number of zero-initialised numbers that begins on a cache line.
template <class Number>
class aligned_array {
    static_assert(std::is_arithmetic_v<Number> || std::is_same_v<Number, std::byte>);

public:
    aligned_array() = default;

    /// Throws `bad_allocation` when the size in bytes overflows or memory is short.
    explicit aligned_array(std::size_t count) : numbers_(allocate(count)), count_(count) {
        std::uninitialized_value_construct_n(numbers_.get(), count);
    }

    /// The other one is then empty.
    aligned_array(aligned_array&& other) noexcept
        : numbers_(std::move(other.numbers_)), count_(std::exchange(other.count_, 0)) {}
    aligned_array& operator=(aligned_array&& other) noexcept {
        numbers_ = std::move(other.numbers_);
        count_ = std::exchange(other.count_, 0);
        return *this;
    }

    Number* data() noexcept { return numbers_.get(); }
    const Number* data() const noexcept { return numbers_.get(); }
    std::size_t size() const noexcept { return count_; }
    Number& operator[](std::size_t index) noexcept { return numbers_[index]; }
    const Number& operator[](std::size_t index) const noexcept { return numbers_[index]; }
    Number* begin() noexcept { return data(); }
    Number* end() noexcept { return data() + count_; }

    std::span<Number> part(std::size_t first, std::size_t count) noexcept { return {data() + first, count}; }

private:
    static constexpr std::align_val_t line_bytes{64};

    struct freeing {
        void operator()(Number* numbers) const noexcept { ::operator delete(numbers, line_bytes); }
    };

    /// Rationale for `nothrow`: memory that cannot be had must end in the module's own "bad allocation".
    static Number* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(Number)) {
            throw bad_allocation();
        }
        auto* numbers = static_cast<Number*>(::operator new(count * sizeof(Number), line_bytes, std::nothrow));
        if (numbers == nullptr) {
            throw bad_allocation();
        }
        return numbers;
    }

    std::unique_ptr<Number[], freeing> numbers_;
    std::size_t count_ = 0;
};

} // namespace kelvane::ssrc
