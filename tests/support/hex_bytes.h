// Payloads as one reads them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace testing_support {

/// The bytes that `hex` has two digits each for. Blanks part the fields for the reader.
inline std::vector<std::byte> hex_bytes(std::string hex) {
    std::erase(hex, ' ');
    std::vector<std::byte> made;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        made.push_back(static_cast<std::byte>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return made;
}

} // namespace testing_support
