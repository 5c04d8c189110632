// The platform without libsndfile.
#include "host/audio/audio_error.h"
#include "host/audio/sndfile_audio.h"

namespace host {

std::unique_ptr<audio_reader> open_sndfile(const std::filesystem::path& file) {
    throw audio_error(file, "is not audio that can be read here: WAV or RF64 of PCM or float samples");
}

std::unique_ptr<audio_writer> create_sndfile(const std::filesystem::path& target, const audio_format&,
                                             std::optional<sample_encoding>) {
    throw audio_error(target, "is not a name of a file that can be written here: .wav or .rf64");
}

} // namespace host
