// Audio files read and written in one go, and files as bytes.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

struct audio {
    host::audio_format format;
    std::vector<double> samples;
};

/// Reads on to the end, so many frames at a time.
std::vector<double> read_to_end(host::audio_reader& reader, std::size_t frames_at_a_time = 1000);

audio read_audio(const std::filesystem::path& file);

void write_audio(const std::filesystem::path& file, const audio& content,
                 std::optional<host::sample_encoding> encoding = std::nullopt);

std::string read_bytes(const std::filesystem::path& file);
void write_bytes(const std::filesystem::path& file, std::string_view bytes);

/// Uniform in [-amplitude, amplitude), the same in every run.
std::vector<double> noise(std::size_t samples, double amplitude);

/// The bits of the samples, for comparisons in which -0.0 and what is not a number count.
std::vector<std::uint64_t> bits_of(std::span<const double> samples);

} // namespace testing_support
