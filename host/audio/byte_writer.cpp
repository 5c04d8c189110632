#include "host/audio/byte_writer.h"

namespace host {

void byte_writer::bytes(std::span<const std::byte> added) {
    bytes_.insert(bytes_.end(), added.begin(), added.end());
}

void byte_writer::lowest_bytes(std::uint64_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        bytes_.push_back(static_cast<std::byte>(value));
        value >>= 8;
    }
}

} // namespace host
