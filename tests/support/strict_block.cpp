#include "tests/support/strict_block.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <stdexcept>

namespace testing_support {

strict_block::strict_block(std::span<const double> samples, const block_format& format)
    : frames_(format.channels == 0 ? 0 : samples.size() / format.channels), format_(format) {
    reallocate(samples.size());
    std::copy(samples.begin(), samples.end(), first_);
}

strict_block::strict_block(std::size_t capacity_samples) {
    if (capacity_samples != 0) {
        reallocate(capacity_samples);
    }
}

const double* strict_block::get_data_ro() {
    return first_;
}

double* strict_block::get_data() {
    ++changes_;
    return first_;
}

void strict_block::set_data_size(std::size_t samples) {
    ++changes_;
    ++resizes_;
    if (samples <= capacity_) {
        return;
    }
    if (refuses_growth_) {
        throw std::bad_alloc();
    }
    reallocate(samples);
}

void strict_block::set_sample_rate(std::uint32_t hz) {
    ++changes_;
    format_.sample_rate_hz = hz;
}

void strict_block::set_channels(std::uint32_t count, std::uint32_t mask) {
    ++changes_;
    format_.channels = count;
    format_.channel_mask = mask;
}

void strict_block::set_sample_count(std::size_t frames) {
    ++changes_;
    frames_ = frames;
}

void strict_block::drop_buffer() noexcept {
    memory_.reset();
    first_ = nullptr;
    capacity_ = 0;
}

std::vector<double> strict_block::samples() const {
    return {first_, first_ + frames_ * format_.channels};
}

void strict_block::reallocate(std::size_t samples) {
    // The allocator's addresses are multiples of 16: one sample further on is an address that suits a double only. The
    // last sample ends the allocation, so that reading past it is found out.
    auto moved = std::make_unique<double[]>(samples + 1);
    std::fill_n(moved.get(), samples + 1, std::numeric_limits<double>::quiet_NaN());
    std::copy_n(first_, capacity_, moved.get() + 1);
    memory_ = std::move(moved);
    first_ = memory_.get() + 1;
    capacity_ = samples;
}

void strict_list::remove_item(std::size_t index) {
    static_cast<void>(blocks_.at(index));
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(index));
}

void strict_list::remove_all() {
    throw std::logic_error("an effect never clears the list");
}

velmora::sample_block* strict_list::insert_item(std::size_t index, std::size_t samples_hint) {
    if (index > blocks_.size()) {
        throw std::out_of_range("insert_item behind the end");
    }
    if (insertions_left_ == 0) {
        throw std::bad_alloc();
    }
    --insertions_left_;
    const auto place = blocks_.begin() + static_cast<std::ptrdiff_t>(index);
    return blocks_.insert(place, make_block(samples_hint))->get();
}

std::unique_ptr<strict_block> strict_list::make_block(std::size_t samples_hint) {
    if (roomy_insertions_left_ == 0) {
        auto block = std::make_unique<strict_block>();
        block->refuse_growth();
        return block;
    }
    --roomy_insertions_left_;
    return std::make_unique<strict_block>(next_capacity(samples_hint));
}

std::size_t strict_list::next_capacity(std::size_t samples_hint) {
    const std::size_t capacities[] = {0, std::max<std::size_t>(samples_hint, 1) - 1, samples_hint,
                                      2 * samples_hint + 64};
    return capacities[insertions_++ % std::size(capacities)];
}

strict_block& strict_list::append(std::span<const double> samples, const block_format& format) {
    return *blocks_.emplace_back(std::make_unique<strict_block>(samples, format));
}

} // namespace testing_support
