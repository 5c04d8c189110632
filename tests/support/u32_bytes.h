// Numbers as payloads hold them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace testing_support {

/// 32 bits each, little-endian.
inline std::vector<std::uint8_t> u32_bytes(std::initializer_list<std::uint32_t> numbers) {
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t number : numbers) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
        }
    }
    return bytes;
}

} // namespace testing_support
