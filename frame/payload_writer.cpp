#include "frame/payload_writer.h"

#include "frame/little_endian.h"

namespace kelvane {

payload_writer& payload_writer::u32(std::uint32_t value) {
    return bytes(store_u32(value));
}

payload_writer& payload_writer::u8(std::uint8_t value) {
    payload_.push_back(static_cast<std::byte>(value));
    return *this;
}

payload_writer& payload_writer::bytes(std::span<const std::byte> values) {
    payload_.insert(payload_.end(), values.begin(), values.end());
    return *this;
}

} // namespace kelvane
