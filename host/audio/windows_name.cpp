#include "host/audio/windows_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace host {

namespace {

bool is_reserved(char sign) {
    return (sign >= 0 && sign < ' ') || std::string_view("<>:\"/\\|?*").find(sign) != std::string_view::npos;
}

template <std::size_t Count>
bool is_one_of(const std::array<std::string_view, Count>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_port_number(std::string_view text) {
    constexpr std::array<std::string_view, 3> raised{"\xC2\xB9", "\xC2\xB2", "\xC2\xB3"}; // 1 to 3 as superscripts
    return (text.size() == 1 && text[0] >= '1' && text[0] <= '9') || is_one_of(raised, text);
}

bool is_device(std::string_view name) {
    constexpr std::array<std::string_view, 6> single{"con", "prn", "aux", "nul", "conin$", "conout$"};
    constexpr std::array<std::string_view, 2> ports{"com", "lpt"};
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    const std::string_view whole = lower;
    return is_one_of(single, whole) ||
           (whole.size() > 3 && is_one_of(ports, whole.substr(0, 3)) && is_port_number(whole.substr(3)));
}

} // namespace

bool is_windows_file_name(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ' ||
        std::any_of(name.begin(), name.end(), is_reserved)) {
        return false;
    }
    const std::string_view stem = name.substr(0, name.find('.'));
    return !is_device(stem.substr(0, stem.find_last_not_of(' ') + 1));
}

} // namespace host
