#include "tests/abi/hand_made_audio.h"

#include <stdexcept>
#include <utility>

namespace abi_test {

namespace {

/// The object behind the first argument of a table's function, which notes the call.
template <class Object, class... Numbers>
Object& logged(void* object, const char* function, Numbers... numbers) {
    auto& self = *static_cast<Object*>(object);
    std::string line = function;
    ((line += ' ' + std::to_string(numbers)), ...);
    self.log.push_back(line);
    return self;
}

const double* get_data_ro(void* object) {
    return logged<hand_made_block>(object, "get_data_ro").samples.data();
}

double* get_data(void* object) {
    return logged<hand_made_block>(object, "get_data").samples.data();
}

std::size_t get_data_size(void* object) {
    return logged<hand_made_block>(object, "get_data_size").samples.size();
}

void set_data_size(void* object, std::size_t samples) {
    logged<hand_made_block>(object, "set_data_size", samples).samples.resize(samples);
}

std::uint32_t get_sample_rate(void* object) {
    return logged<hand_made_block>(object, "get_sample_rate").rate_hz;
}

void set_sample_rate(void* object, std::uint32_t hz) {
    logged<hand_made_block>(object, "set_sample_rate", hz).rate_hz = hz;
}

std::uint32_t get_channels(void* object) {
    return logged<hand_made_block>(object, "get_channels").channels;
}

std::uint32_t get_channel_mask(void* object) {
    return logged<hand_made_block>(object, "get_channel_mask").channel_mask;
}

void set_channels(void* object, std::uint32_t count, std::uint32_t mask) {
    auto& block = logged<hand_made_block>(object, "set_channels", count, mask);
    block.channels = count;
    block.channel_mask = mask;
}

std::size_t get_sample_count(void* object) {
    return logged<hand_made_block>(object, "get_sample_count").frames;
}

void set_sample_count(void* object, std::size_t frames) {
    logged<hand_made_block>(object, "set_sample_count", frames).frames = frames;
}

const function_table block_table({
    entry(get_data_ro),
    entry(get_data),
    entry(get_data_size),
    entry(set_data_size),
    entry(get_sample_rate),
    entry(set_sample_rate),
    entry(get_channels),
    entry(get_channel_mask),
    entry(set_channels),
    entry(get_sample_count),
    entry(set_sample_count),
});

std::size_t get_count(void* object) {
    return logged<hand_made_list>(object, "get_count").blocks.size();
}

hand_made_block* get_item(void* object, std::size_t index) {
    return logged<hand_made_list>(object, "get_item", index).blocks.at(index);
}

void remove_item(void* object, std::size_t index) {
    auto& blocks = logged<hand_made_list>(object, "remove_item", index).blocks;
    blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(index));
}

void remove_all(void*) {
    throw std::logic_error("an effect does not empty the list");
}

hand_made_block* insert_item(void* object, std::size_t index, std::size_t samples_hint) {
    auto& list = logged<hand_made_list>(object, "insert_item", index, samples_hint);
    hand_made_block* const block = &list.inserted.emplace_back(list.room_samples);
    list.blocks.insert(list.blocks.begin() + static_cast<std::ptrdiff_t>(index), block);
    return block;
}

const function_table list_table({
    entry(get_count),
    entry(get_item),
    entry(remove_item),
    entry(remove_all),
    entry(insert_item),
});

bool is_aborting(void*) {
    return false;
}

void* get_abort_event(void*) {
    return nullptr;
}

const function_table signal_table({entry(is_aborting), entry(get_abort_event)});

} // namespace

hand_made_block::hand_made_block(std::uint32_t hz, const std::vector<double>& mono)
    : table(block_table.functions), rate_hz(hz), frames(mono.size()), samples(mono) {}

hand_made_block::hand_made_block(std::size_t capacity_samples)
    : table(block_table.functions), rate_hz(0), channels(0), channel_mask(0), frames(0), samples(capacity_samples) {}

hand_made_list::hand_made_list(std::vector<hand_made_block*> listed)
    : table(list_table.functions), blocks(std::move(listed)) {}

hand_made_signal::hand_made_signal() : table(signal_table.functions) {}

} // namespace abi_test
