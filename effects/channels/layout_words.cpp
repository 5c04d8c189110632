#include "effects/channels/layout_words.h"

#include "effects/channels/layout_settings.h"
#include "velmora/layout_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

/// Other names for the layouts, as people write them.
constexpr std::array<velmora::named_layout, 5> other_names{{
    {velmora::layout::mono, "1.0"},
    {velmora::layout::stereo, "2.0"},
    {velmora::layout::quad, "4.0"},
    {velmora::layout::surround_5_1, "5.1 (back)"},
    {velmora::layout::rear_pair, "rear"},
}};

/// Capitals, blanks and parentheses do not matter.
std::string simplified(std::string_view name) {
    std::string simple;
    for (const char letter : name) {
        if (letter >= 'A' && letter <= 'Z') {
            simple += static_cast<char>(letter - 'A' + 'a');
        } else if (letter != ' ' && letter != '(' && letter != ')') {
            simple += letter;
        }
    }
    return simple;
}

std::string hexadecimal(std::uint32_t number) {
    std::array<char, 8> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    std::string text(static_cast<const char*>(digits.data()), end);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char digit) { return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit; });
    return "0x" + text;
}

std::optional<std::uint32_t> parse_hexadecimal(std::string_view text) {
    if (!text.starts_with("0x") && !text.starts_with("0X")) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    const auto [end, fault] = std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
    const bool is_number = fault == std::errc() && end == text.data() + text.size();
    return is_number ? std::optional(number) : std::nullopt;
}

std::optional<std::uint32_t> parse_mask(std::string_view text) {
    const auto is_asked = [asked = simplified(text)](const velmora::named_layout& known) {
        return simplified(known.name) == asked;
    };
    const auto* const named =
        std::find_if(std::begin(velmora::named_layouts), std::end(velmora::named_layouts), is_asked);
    if (named != std::end(velmora::named_layouts)) {
        return named->channel_mask;
    }
    const auto other = std::find_if(other_names.begin(), other_names.end(), is_asked);
    return other != other_names.end() ? std::optional(other->channel_mask) : parse_hexadecimal(text);
}

std::string show_mask(std::uint32_t channel_mask) {
    const auto* const named =
        std::find_if(std::begin(velmora::named_layouts), std::end(velmora::named_layouts),
                     [&](const velmora::named_layout& known) { return known.channel_mask == channel_mask; });
    return named == std::end(velmora::named_layouts) ? hexadecimal(channel_mask) : named->name;
}

std::string range_of_masks() {
    std::string names;
    for (const velmora::named_layout& known : velmora::named_layouts) {
        names += std::string(known.name) + ", ";
    }
    return names + "or a mask such as 0x60F";
}

template <class Settings>
std::unique_ptr<settings_words> words_of(const std::string& meaning) {
    std::vector<described_field<Settings>> fields{
        {{.name = "mask", .unit = "", .range = range_of_masks(), .meaning = meaning},
         [](const Settings& settings) { return show_mask(settings.target_mask); },
         [](Settings& settings, std::string_view text) {
             const auto mask = parse_mask(text);
             settings.target_mask = mask.value_or(settings.target_mask);
             return mask.has_value();
         }},
    };
    return std::make_unique<struct_words<Settings>>(std::move(fields));
}

} // namespace

std::unique_ptr<settings_words> layout_converter_words() {
    return words_of<layout_converter_settings>("the speakers of the output");
}

std::unique_ptr<settings_words> layout_limiter_words() {
    return words_of<layout_limiter_settings>("the speakers that the output may have");
}

} // namespace kelvane
