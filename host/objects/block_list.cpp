#include "host/objects/block_list.h"

#include <stdexcept>

namespace host {

void block_list::remove_item(std::size_t index) {
    static_cast<void>(blocks_.at(index)); // an index past the end is the module's fault, and is said
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(index));
}

velmora::sample_block* block_list::insert_item(std::size_t index, std::size_t samples_hint) {
    if (index > blocks_.size()) {
        throw std::out_of_range("block inserted behind the end of the list");
    }
    auto inserted = std::make_unique<block>();
    inserted->set_data_size(samples_hint);
    const auto place = blocks_.begin() + static_cast<std::ptrdiff_t>(index);
    return blocks_.insert(place, std::move(inserted))->get();
}

} // namespace host
