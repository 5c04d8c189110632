#include "host/audio/audio_error.h"

#include "host/platform/path_text.h"

#include <algorithm>
#include <string>

namespace host {

namespace {

/// On one line whatever characters the name has.
std::string shown_name(const std::filesystem::path& file) {
    std::string name = to_utf8(file);
    const auto breaks_line = [](char letter) { return (letter >= 0 && letter < ' ') || letter == '\x7F'; };
    std::replace_if(name.begin(), name.end(), breaks_line, '?');
    return name;
}

} // namespace

audio_error::audio_error(const std::filesystem::path& file, std::string_view reason)
    : std::runtime_error(shown_name(file).append(": ").append(reason)) {}

} // namespace host
