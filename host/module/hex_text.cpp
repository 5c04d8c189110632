#include "host/module/hex_text.h"

#include <charconv>

namespace host {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";
constexpr std::string_view blanks = " \t";

std::optional<std::byte> parse_byte(std::string_view two_digits) {
    unsigned value = 0;
    const char* const end = two_digits.data() + two_digits.size();
    const auto [stop, error] = std::from_chars(two_digits.data(), end, value, 16);
    if (two_digits.size() != 2 || error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return static_cast<std::byte>(value);
}

} // namespace

std::string to_hex(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte byte : bytes) {
        text += digits[std::to_integer<std::size_t>(byte >> 4)];
        text += digits[std::to_integer<std::size_t>(byte & std::byte{15})];
    }
    return text;
}

std::optional<std::vector<std::byte>> parse_hex(std::string_view text) {
    std::vector<std::byte> bytes;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        if (text.empty()) {
            return bytes;
        }
        const auto byte = parse_byte(text.substr(0, 2));
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(*byte);
        text.remove_prefix(2);
    }
}

} // namespace host
