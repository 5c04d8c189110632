#include "frame/sample_buffer.h"

#include "frame/exceptions.h"

#include <limits>

namespace kelvane {

namespace {

constexpr std::size_t largest_size = std::numeric_limits<std::size_t>::max();

} // namespace

void sample_buffer::grow(std::size_t samples) {
    if (samples == 0) {
        samples_.reset();
        capacity_ = 0;
        return;
    }
    if (samples <= capacity_) {
        return;
    }
    if (samples > largest_size / sizeof(double)) {
        throw bad_allocation();
    }
    auto* grown = static_cast<double*>(std::realloc(samples_.get(), samples * sizeof(double)));
    if (grown == nullptr) {
        throw bad_allocation();
    }
    static_cast<void>(samples_.release()); // realloc has taken it over
    samples_.reset(grown);
    capacity_ = samples;
}

std::span<double> sample_buffer::grow_to_frames(std::size_t frames, std::size_t channels) {
    if (channels != 0 && frames > largest_size / channels) {
        throw bad_allocation();
    }
    const std::size_t samples = frames * channels;
    grow(samples);
    return {data(), samples};
}

} // namespace kelvane
