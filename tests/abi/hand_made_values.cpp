#include "tests/abi/hand_made_values.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace abi_test {

namespace {

std::string copied(const char* utf8, std::size_t length) {
    constexpr std::size_t up_to_the_zero = ~std::size_t{0};
    return length == up_to_the_zero ? std::string(utf8) : std::string(utf8, length);
}

hand_made_text& text_of(void* object) {
    return *static_cast<hand_made_text*>(object);
}

void append_text(void* object, const char* utf8, std::size_t length) {
    text_of(object).text += copied(utf8, length);
    text_of(object).length = length;
}

const char* get_text(void* object) {
    return text_of(object).text.c_str();
}

void set_text(void* object, const char* utf8, std::size_t length) {
    text_of(object).text = copied(utf8, length);
    text_of(object).length = length;
}

const function_table text_table({entry(append_text), entry(get_text), entry(set_text)});

bool is_main_thread(void* object) {
    auto& host = *static_cast<hand_made_host*>(object);
    ++host.questions;
    return host.is_main_thread;
}

void print_console(void* object, const char* utf8, std::size_t length) {
    static_cast<hand_made_host*>(object)->console.emplace_back(utf8, length);
}

const function_table host_table({entry(is_main_thread), entry(print_console)});

hand_made_preset& preset_of(void* object) {
    return *static_cast<hand_made_preset*>(object);
}

guid_bytes* get_owner(void* object, guid_bytes* out) {
    *out = preset_of(object).owner;
    return out;
}

void set_owner(void* object, const guid_bytes* owner) {
    preset_of(object).owner = *owner;
}

const void* get_data(void* object) {
    return preset_of(object).payload.data();
}

std::size_t get_data_size(void* object) {
    return preset_of(object).payload.size();
}

void set_data(void* object, const void* data, std::size_t bytes) {
    const auto* const first = static_cast<const std::uint8_t*>(data);
    preset_of(object).payload.assign(first, first + bytes);
}

const function_table preset_table({
    entry(get_owner),
    entry(set_owner),
    entry(get_data),
    entry(get_data_size),
    entry(set_data),
});

std::uint32_t release(void* object) {
    return --static_cast<hand_made_service*>(object)->references;
}

std::uint32_t add_ref(void* object) {
    return ++static_cast<hand_made_service*>(object)->references;
}

bool query(void*, void**, const guid_bytes*) {
    return false;
}

const function_table service_table({entry(release), entry(add_ref), entry(query)});

std::uint64_t skip(void* object, std::uint64_t bytes, void*) {
    auto& reader = *static_cast<hand_made_reader*>(object);
    const std::size_t done = std::min<std::size_t>(bytes, reader.bytes.size() - reader.position);
    reader.position += done;
    return done;
}

std::size_t read(void* object, void* buffer, std::size_t bytes, void* abort) {
    auto& reader = *static_cast<hand_made_reader*>(object);
    const std::size_t done = reader.bytes.copy(static_cast<char*>(buffer), bytes, reader.position);
    skip(object, done, abort);
    return done;
}

void demand(bool whole) {
    if (!whole) {
        throw std::runtime_error("the stream ends too early");
    }
}

void read_exact(void* object, void* buffer, std::size_t bytes, void* abort) {
    demand(read(object, buffer, bytes, abort) == bytes);
}

std::uint64_t skip_exact(void* object, std::uint64_t bytes, void* abort) {
    demand(skip(object, bytes, abort) == bytes);
    return static_cast<hand_made_reader*>(object)->position;
}

const function_table reader_table({entry(read), entry(read_exact), entry(skip), entry(skip_exact)});

void write(void* object, const void* data, std::size_t bytes, void*) {
    static_cast<hand_made_writer*>(object)->bytes.append(static_cast<const char*>(data), bytes);
}

const function_table writer_table({entry(write)});

} // namespace

hand_made_text::hand_made_text() : table(text_table.functions) {}

hand_made_host::hand_made_host() : table(host_table.functions) {}

hand_made_preset::hand_made_preset() : table(preset_table.functions) {}

hand_made_service::hand_made_service() : table(service_table.functions) {}

hand_made_reader::hand_made_reader(std::string content) : table(reader_table.functions), bytes(std::move(content)) {}

hand_made_writer::hand_made_writer() : table(writer_table.functions) {}

} // namespace abi_test
