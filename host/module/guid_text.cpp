#include "host/module/guid_text.h"

#include "host/module/hex_text.h"

#include <fmt/format.h>

namespace host {

std::string to_text(const velmora::guid& id) {
    const auto& d = id.data4;
    return fmt::format("{{{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}}}", id.data1, id.data2,
                       id.data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
}

std::optional<velmora::guid> parse_guid(std::string_view text) {
    if (text.starts_with('{') && text.ends_with('}')) {
        text = text.substr(1, text.size() - 2);
    }
    constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
    if (text.size() != form.size()) {
        return std::nullopt;
    }
    std::string digits;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if ((form[i] == '-') != (text[i] == '-')) {
            return std::nullopt;
        }
        if (form[i] != '-') {
            digits += text[i];
        }
    }
    const auto bytes = parse_hex(digits);
    if (!bytes || bytes->size() != sizeof(velmora::guid)) { // blanks between the digits
        return std::nullopt;
    }
    const auto number = [&](std::size_t at) { return std::to_integer<std::uint8_t>((*bytes)[at]); };
    velmora::guid id{};
    id.data1 = static_cast<std::uint32_t>(number(0)) << 24 | static_cast<std::uint32_t>(number(1)) << 16 |
               static_cast<std::uint32_t>(number(2)) << 8 | number(3);
    id.data2 = static_cast<std::uint16_t>(number(4) << 8 | number(5));
    id.data3 = static_cast<std::uint16_t>(number(6) << 8 | number(7));
    for (std::size_t i = 0; i < 8; ++i) {
        id.data4[i] = number(8 + i);
    }
    return id;
}

} // namespace host
