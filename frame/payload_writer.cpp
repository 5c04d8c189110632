#include "frame/payload_writer.h"

#include "frame/exceptions.h"
#include "frame/little_endian.h"

#include <limits>

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

payload_writer& payload_writer::text(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw mox::exception_overflow();
    }
    return u32(static_cast<std::uint32_t>(text.size())).bytes(std::as_bytes(std::span(text)));
}

} // namespace kelvane
