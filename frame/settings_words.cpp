#include "frame/settings_words.h"

#include <charconv>
#include <system_error>

namespace kelvane {

std::string range_text(std::int64_t lowest, std::int64_t highest) {
    return std::to_string(lowest) + " to " + std::to_string(highest);
}

std::optional<std::int64_t> parse_number(std::string_view text) {
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || stop != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace kelvane
