// What kind of file a name asks for.
#pragma once

#include "host/platform/path_text.h"

#include <algorithm>
#include <filesystem>
#include <string>

namespace host {

/// The extension with its dot, in lower case: ".wav". Only the letters A to Z have a case here.
inline std::string lower_extension(const std::filesystem::path& file) {
    std::string extension = to_utf8(file.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return extension;
}

} // namespace host
