// Masks that a container cannot record.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace host {

/// Throws `audio_error` when a file of the container that is to hold `wanted` would be read back as `recorded`, a mask
/// of as many speakers. The text tells what a person can do about it.
void check_speakers(const std::filesystem::path& target, std::string_view container, std::uint32_t wanted,
                    std::uint32_t recorded);

} // namespace host
