// Reading audio files.
#pragma once

#include "host/audio/audio_format.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace host {

/// One open file, read from its start to its end. Samples are at full scale at -1.0 and 1.0.
class audio_reader {
public:
    audio_reader() = default;
    audio_reader(const audio_reader&) = delete;
    audio_reader& operator=(const audio_reader&) = delete;
    virtual ~audio_reader() = default;

    virtual audio_format format() const = 0;

    /// The length that the file claims, for a progress display: an MP3 may have fewer frames, and a stream claims none.
    virtual std::optional<std::uint64_t> declared_frames() const = 0;

    /// Fills the front of `interleaved` with whole frames, samples in mask order (lowest set bit first), and answers
    /// how many frames they are: 0 at the end and for room for less than a frame. Throws `audio_error` when the audio
    /// is damaged or ends before the length that its container tells of.
    virtual std::size_t read(std::span<double> interleaved) = 0;
};

/// Opens any file that can be read: everywhere WAV and RF64 of PCM and float samples, elsewhere than on Windows also
/// what libsndfile reads (FLAC, Ogg, AIFF, MP3 and others). The kind is told by the content, not by the name.
///
/// The mask is the file's own where it has one: that of WAV and W64, the CHAN chunk of AIFF, that of CAF, the channel
/// mask tag of FLAC, and the channel assignments that FLAC and Ogg prescribe by channel count. A file without one, and
/// one that names a speaker twice or an unknown one, has `default_mask`.
///
/// Throws `audio_error` for a file that is missing, not audio, damaged, or seen already to be cut short.
std::unique_ptr<audio_reader> open_audio(const std::filesystem::path& file);

} // namespace host
