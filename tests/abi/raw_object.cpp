#include "tests/abi/raw_object.h"

#include <string>

namespace abi_test {

guid_bytes guid(std::string_view registry_form) {
    // Where the two digits of each byte stand in {00000000-0000-0000-0000-000000000000}.
    constexpr std::array<std::size_t, 16> digits{7, 5, 3, 1, 12, 10, 17, 15, 20, 22, 25, 27, 29, 31, 33, 35};
    guid_bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::string pair(registry_form.substr(digits[i], 2));
        bytes[i] = static_cast<std::uint8_t>(std::stoul(pair, nullptr, 16));
    }
    return bytes;
}

} // namespace abi_test
