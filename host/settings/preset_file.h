// Presets in files.
#pragma once

#include "host/objects/preset.h"

#include <filesystem>
#include <stdexcept>

namespace host {

/// The file holds no preset, or cannot be written; the message names it.
class preset_file_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A preset file is JSON: {"owner": GUID text, "payload": hexadecimal bytes}. Throws `preset_file_error`,
/// and `audio_error` when the file is missing, a folder, or cannot be opened.
preset read_preset_file(const std::filesystem::path& file);

/// Replaces the file, or leaves it as it was. Throws `preset_file_error`, and `audio_error` where no file can be made.
void write_preset_file(const std::filesystem::path& file, const preset& written);

} // namespace host
