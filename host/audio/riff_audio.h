// WAV and RF64 files of PCM and float samples, on every platform alike.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace host {

/// Null for a file of another kind, or a WAV that is coded in another way. Throws `audio_error` for a file that is
/// missing, damaged or cut short.
std::unique_ptr<audio_reader> open_riff(const std::filesystem::path& file);

/// Writes a WAV, or an RF64 when a WAV's size would pass `limit_bytes`. Throws `audio_error`.
std::unique_ptr<audio_writer> create_riff(const std::filesystem::path& target, const audio_format& format,
                                          sample_encoding encoding, std::uint64_t limit_bytes);

} // namespace host
