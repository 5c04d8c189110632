// A queue whose places are used again.
#pragma once

#include "frame/exceptions.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

namespace kelvane {

/// A ring of places. What an element owns stays in its place when it leaves, for the element that comes there next: in
/// a steady state nothing is allocated. The ring grows to the largest need and stays there.
template <class T>
class recycled_queue {
public:
    bool empty() const noexcept { return size_ == 0; }
    std::size_t size() const noexcept { return size_; }

    /// The first element has the index 0.
    T& operator[](std::size_t index) noexcept { return places_[place_of(index)]; }
    const T& operator[](std::size_t index) const noexcept { return places_[place_of(index)]; }
    T& back() noexcept { return (*this)[size_ - 1]; }

    /// Makes room behind the last element and returns it, with whatever it held before. Throws `bad_allocation` and
    /// then leaves the queue as it was. Moves the elements when the ring grows.
    T& push() {
        if (size_ == places_.size()) {
            grow();
        }
        ++size_;
        return back();
    }

    /// Lets the first elements go; at most as many as there are.
    void pop(std::size_t count = 1) noexcept {
        first_ = place_of(count);
        size_ -= count;
    }

private:
    static constexpr std::size_t least_places = 4;

    /// The number of places is a power of two, or 0 in the beginning.
    std::size_t place_of(std::size_t index) const noexcept { return (first_ + index) & (places_.size() - 1); }

    void grow() {
        std::rotate(places_.begin(), places_.begin() + static_cast<std::ptrdiff_t>(first_), places_.end());
        first_ = 0;
        try {
            places_.resize(std::max(least_places, 2 * places_.size()));
        } catch (const std::bad_alloc&) {
            throw bad_allocation();
        }
    }

    std::vector<T> places_;
    std::size_t first_ = 0;
    std::size_t size_ = 0;
};

} // namespace kelvane
