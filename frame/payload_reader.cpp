#include "frame/payload_reader.h"

#include "frame/exceptions.h"
#include "frame/little_endian.h"

#include <algorithm>
#include <array>

namespace kelvane {

std::size_t payload_reader::read(void* buffer, std::size_t bytes, velmora::abort_signal*) {
    const auto copied = payload_.subspan(position_, std::min(bytes, left()));
    std::copy(copied.begin(), copied.end(), static_cast<std::byte*>(buffer));
    position_ += copied.size();
    return copied.size();
}

void payload_reader::read_exact(void* buffer, std::size_t bytes, velmora::abort_signal* abort) {
    if (bytes > left()) {
        throw velmora_io::exception_io_data_truncation();
    }
    read(buffer, bytes, abort);
}

std::uint64_t payload_reader::skip(std::uint64_t bytes, velmora::abort_signal*) {
    const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, left()));
    position_ += passed;
    return passed;
}

std::uint64_t payload_reader::skip_exact(std::uint64_t bytes, velmora::abort_signal* abort) {
    if (bytes > left()) {
        throw velmora_io::exception_io_data_truncation();
    }
    skip(bytes, abort);
    return position_;
}

std::uint32_t read_u32(payload_reader& payload) {
    std::array<std::byte, 4> bytes;
    payload.read_exact(bytes.data(), bytes.size(), nullptr);
    return load_u32(bytes);
}

std::int32_t read_i32(payload_reader& payload) {
    return static_cast<std::int32_t>(read_u32(payload));
}

std::uint8_t read_u8(payload_reader& payload) {
    std::byte byte{};
    payload.read_exact(&byte, 1, nullptr);
    return std::to_integer<std::uint8_t>(byte);
}

std::string read_text(payload_reader& payload) {
    const std::size_t bytes = read_u32(payload);
    if (bytes > payload.left()) {
        throw velmora_io::exception_io_data_truncation();
    }
    std::string text(bytes, '\0');
    payload.read_exact(text.data(), bytes, nullptr);
    return text;
}

} // namespace kelvane
