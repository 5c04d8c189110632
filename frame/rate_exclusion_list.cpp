#include "frame/rate_exclusion_list.h"

#include <algorithm>

namespace kelvane {

namespace {

/// The item between two separators, as far as it has been read.
class open_item {
public:
    void digit(char digit) noexcept { value_ = value_ * 10 + static_cast<std::uint32_t>(digit - '0'); }

    /// The bound before the first dash is the low one.
    void dash() noexcept {
        if (!has_dash_) {
            low_ = value_;
        }
        has_dash_ = true;
        value_ = 0;
    }

    std::uint32_t value() const noexcept { return value_; }
    rate_exclusion_range range() const noexcept { return {has_dash_ ? low_ : value_, value_}; }

private:
    std::uint32_t value_ = 0;
    std::uint32_t low_ = 0;
    bool has_dash_ = false;
};

} // namespace

rate_exclusion_list parse_rate_exclusions(std::string_view text) {
    rate_exclusion_list exclusions;
    open_item item;
    for (const char sign : text) {
        if (sign >= '0' && sign <= '9') {
            item.digit(sign);
        } else if (sign == '-') {
            item.dash();
        } else if (sign == ',' || sign == ';') {
            exclusions.push_back(item.range());
            item = open_item();
        }
    }
    if (item.value() != 0) {
        exclusions.push_back(item.range());
    }
    return exclusions;
}

bool is_excluded(const rate_exclusion_list& exclusions, std::uint32_t rate_hz) {
    return std::any_of(exclusions.begin(), exclusions.end(), [rate_hz](const rate_exclusion_range& range) {
        return range.low_hz <= rate_hz && rate_hz <= range.high_hz;
    });
}

std::string to_text(const rate_exclusion_list& exclusions) {
    std::string text;
    for (const rate_exclusion_range& range : exclusions) {
        text += std::to_string(range.low_hz);
        if (range.high_hz != range.low_hz) {
            text += '-' + std::to_string(range.high_hz);
        }
        text += ';';
    }
    // The last separator goes where the item counts without it: one whose value is 0 would be dropped.
    if (!exclusions.empty() && exclusions.back().high_hz != 0) {
        text.pop_back();
    }
    return text;
}

} // namespace kelvane
