// Headers under construction.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// Collects little-endian numbers and other bytes.
class byte_writer {
public:
    template <std::unsigned_integral Number>
    void number(Number value) {
        lowest_bytes(value, sizeof value);
    }
    void text(std::string_view letters) { bytes(std::as_bytes(std::span(letters))); }
    void bytes(std::span<const std::byte> added);
    void zeros(std::size_t count) { lowest_bytes(0, count); }

    std::vector<std::byte> take() { return std::exchange(bytes_, {}); }

private:
    void lowest_bytes(std::uint64_t value, std::size_t count);

    std::vector<std::byte> bytes_;
};

} // namespace host
