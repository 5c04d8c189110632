// The 128-bit name of an interface, a service or an effect.
#pragma once

#include <stdint.h>

namespace velmora {

/// 16 bytes in the registry's layout: the three numbers are little-endian, the last eight bytes stand as written.
/// {0D048731-8AA8-4704-8AD6-189E24D48C88} is
/// `guid{0x0D048731, 0x8AA8, 0x4704, {0x8A, 0xD6, 0x18, 0x9E, 0x24, 0xD4, 0x8C, 0x88}}`.
struct guid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
};

static_assert(sizeof(guid) == 16, "a GUID crosses the boundary as 16 bytes");

constexpr bool operator==(const guid& a, const guid& b) {
    if (a.data1 != b.data1 || a.data2 != b.data2 || a.data3 != b.data3) {
        return false;
    }
    for (int i = 0; i < 8; ++i) {
        if (a.data4[i] != b.data4[i]) {
            return false;
        }
    }
    return true;
}

constexpr bool operator!=(const guid& a, const guid& b) {
    return !(a == b);
}

} // namespace velmora
