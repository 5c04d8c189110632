// What went wrong with an audio file.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace host {

/// `what()` is one line of UTF-8 for the user: the file's name, a colon and the reason.
class audio_error : public std::runtime_error {
public:
    audio_error(const std::filesystem::path& file, std::string_view reason);
};

} // namespace host
