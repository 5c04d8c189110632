// Numbers in files, at any address and in either byte order.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <span>

namespace host {

/// The number in the whole of `bytes`, which are no more than it has room for.
template <std::unsigned_integral Number>
constexpr Number load(std::span<const std::byte> bytes, std::endian order = std::endian::little) noexcept {
    Number value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t place = order == std::endian::big ? bytes.size() - 1 - i : i;
        value = static_cast<Number>(value | std::to_integer<Number>(bytes[i]) << (8 * place));
    }
    return value;
}

/// Fills `bytes` with the lowest bytes of `value`, little-endian.
template <std::unsigned_integral Number>
constexpr void store(std::span<std::byte> bytes, Number value) noexcept {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(value >> (8 * i));
    }
}

} // namespace host
