// Writing the payload of a preset: the mirror of payload_reader.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kelvane {

/// Collects fields, little-endian.
class payload_writer {
public:
    payload_writer& u32(std::uint32_t value);
    payload_writer& i32(std::int32_t value) { return u32(static_cast<std::uint32_t>(value)); }
    payload_writer& u8(std::uint8_t value);
    payload_writer& bytes(std::span<const std::byte> values);
    /// Its length in bytes (32 bits), then the text. Throws `mox::exception_overflow` for a longer one.
    payload_writer& text(std::string_view text);

    const std::vector<std::byte>& payload() const noexcept { return payload_; }

private:
    std::vector<std::byte> payload_;
};

} // namespace kelvane
