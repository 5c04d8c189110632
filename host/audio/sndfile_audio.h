// Audio files by way of libsndfile, where the platform has it. Elsewhere both functions throw.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace host {

/// Any file that the library reads. Throws `audio_error`.
std::unique_ptr<audio_reader> open_sndfile(const std::filesystem::path& file);

/// Any container of `create_audio` but WAV and RF64; nothing for `encoding` is the container's own choice. Throws
/// `audio_error`.
std::unique_ptr<audio_writer> create_sndfile(const std::filesystem::path& target, const audio_format& format,
                                             std::optional<sample_encoding> encoding);

} // namespace host
