// Other programs, as peers to hold files against.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace testing_support {

/// A word of a shell command.
std::string quoted(const std::filesystem::path& file);

/// What the shell command prints. Throws when it fails.
std::string output_of(const std::string& command);

inline constexpr std::uint32_t tone_rate_hz = 48000;

/// One second of a tone of its own in each channel, all different.
std::vector<double> make_tones(std::size_t channels);

/// For each channel of one second of such tones, the channel of `make_tones` that has the tone most heard in it.
std::vector<std::size_t> heard_tones(const std::vector<double>& samples, std::size_t channels);

/// 0, 1, 2 and so on: what is heard when the channels are in order.
std::vector<std::size_t> in_order(std::size_t channels);

/// Has ffmpeg write the tones to a file of a layout, in the order of the layout's speaker bits.
void ffmpeg_write_tones(const std::filesystem::path& file, const std::string& layout, std::size_t channels,
                        const std::string& codec);

/// The samples as ffmpeg reads them, in the order of the speaker bits.
std::vector<double> ffmpeg_read(const std::filesystem::path& file);

/// The file's layout as ffmpeg names it.
std::string ffmpeg_layout(const std::filesystem::path& file);

} // namespace testing_support
