#include "host/audio/windows_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace host {

namespace {

bool is_kept(char sign) {
    return (sign >= 0 && sign < ' ') || std::string_view("<>:\"/\\|?*").find(sign) != std::string_view::npos;
}

bool is_device(std::string_view name) {
    constexpr std::array<std::string_view, 4> single{"con", "prn", "aux", "nul"};
    constexpr std::array<std::string_view, 2> numbered{"com", "lpt"}; // from 1 to 9
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    const bool has_number = lower.size() == 4 && lower[3] >= '1' && lower[3] <= '9';
    return std::find(single.begin(), single.end(), lower) != single.end() ||
           (has_number && std::find(numbered.begin(), numbered.end(), lower.substr(0, 3)) != numbered.end());
}

} // namespace

bool is_windows_file_name(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ' || std::any_of(name.begin(), name.end(), is_kept)) {
        return false;
    }
    const std::string_view stem = name.substr(0, name.find('.'));
    return !is_device(stem.substr(0, stem.find_last_not_of(' ') + 1));
}

} // namespace host
