// Bytes as hexadecimal text.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Two capital digits a byte, nothing between them.
std::string to_hex(std::span<const std::byte> bytes);

/// The inverse; small letters and white space between bytes are taken too. Nothing for an odd digit or another sign.
std::optional<std::vector<std::byte>> parse_hex(std::string_view text);

} // namespace host
