// Writing audio files.
#pragma once

#include "host/audio/audio_format.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace host {

enum class sample_encoding { pcm16, pcm24, pcm32, float32, float64 };

/// One file being written. Until `commit` it lies beside its target under a temporary name; a writer destroyed without
/// it removes that file and leaves the target as it was.
class audio_writer {
public:
    audio_writer() = default;
    audio_writer(const audio_writer&) = delete;
    audio_writer& operator=(const audio_writer&) = delete;
    virtual ~audio_writer() = default;

    /// Appends whole frames, samples in mask order. Integer encodings round to the nearest value (ties to even), clip
    /// at full scale and take what is no number for silence; MP3 and Vorbis clip at 24 dB above it and do the same.
    /// Throws `audio_error` when the file cannot be written.
    virtual void write(std::span<const double> interleaved) = 0;

    /// Completes the file and gives it its name, in the place of any file that had it. The last call. Throws
    /// `audio_error`.
    virtual void commit() = 0;
};

/// Starts a file whose container is told by the target's extension, in whatever case:
///
/// | extension     | encodings            | default | speakers it records                              |
/// |---------------|----------------------|---------|--------------------------------------------------|
/// | .wav          | all                  | pcm24   | any; becomes RF64 past 4 GiB                     |
/// | .rf64         | all                  | pcm24   | any; RF64 at any size                            |
/// | .w64          | all                  | pcm24   | the default mask of the channel count            |
/// | .caf          | all                  | pcm24   | the default mask, and what its layout tags name  |
/// | .aiff .aif    | all                  | pcm24   | the same; up to 4 GiB                            |
/// | .flac         | pcm16, pcm24         | pcm24   | FLAC's own for 1 to 8 channels                   |
/// | .ogg .oga     | none to choose       | Vorbis  | Vorbis' own for 1 to 8 channels                  |
/// | .mp3          | none to choose       | MP3     | mono and stereo                                  |
///
/// On Windows there are .wav and .rf64. Throws `audio_error` when the container cannot hold the encoding or the channel
/// count, when the speakers read back from it would be others, and when no file can be made there.
std::unique_ptr<audio_writer> create_audio(const std::filesystem::path& target, const audio_format& format,
                                           std::optional<sample_encoding> encoding = std::nullopt);

} // namespace host
