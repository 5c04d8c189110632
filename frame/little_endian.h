// Numbers in byte streams: little-endian, at any address.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

constexpr std::array<std::byte, 4> store_u32(std::uint32_t value) noexcept {
    return {static_cast<std::byte>(value), static_cast<std::byte>(value >> 8), static_cast<std::byte>(value >> 16),
            static_cast<std::byte>(value >> 24)};
}

constexpr std::uint32_t load_u32(std::span<const std::byte, 4> bytes) noexcept {
    return std::to_integer<std::uint32_t>(bytes[0]) | std::to_integer<std::uint32_t>(bytes[1]) << 8 |
           std::to_integer<std::uint32_t>(bytes[2]) << 16 | std::to_integer<std::uint32_t>(bytes[3]) << 24;
}

} // namespace kelvane
