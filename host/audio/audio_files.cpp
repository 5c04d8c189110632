// Which of the two ways a file goes.
#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/audio/file_extension.h"
#include "host/audio/riff_audio.h"
#include "host/audio/riff_header.h"
#include "host/audio/sndfile_audio.h"

#include <bit>

namespace host {

namespace {

void check_format(const std::filesystem::path& target, const audio_format& format) {
    if (format.channels == 0 || format.channels > most_channels || format.sample_rate_hz == 0 ||
        static_cast<std::uint32_t>(std::popcount(format.channel_mask)) != format.channels) {
        throw audio_error(target, "cannot be made: the channels, their mask and the sample rate do not fit together");
    }
}

} // namespace

std::unique_ptr<audio_reader> open_audio(const std::filesystem::path& file) {
    auto reader = open_riff(file);
    return reader ? std::move(reader) : open_sndfile(file);
}

std::unique_ptr<audio_writer> create_audio(const std::filesystem::path& target, const audio_format& format,
                                           std::optional<sample_encoding> encoding) {
    check_format(target, format);
    const std::string extension = lower_extension(target);
    const bool is_always_wide = extension == ".rf64";
    if (extension == ".wav" || is_always_wide) {
        return create_riff(target, format, encoding.value_or(sample_encoding::pcm24),
                           is_always_wide ? 0 : riff_limit_bytes);
    }
    return create_sndfile(target, format, encoding);
}

} // namespace host
