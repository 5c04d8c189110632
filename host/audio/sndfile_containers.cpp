#include "host/audio/sndfile_containers.h"

#include "host/audio/audio_error.h"
#include "host/audio/file_extension.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace host {

namespace {

constexpr std::uint64_t any_size = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t four_gib_less_header = 0xFFFF'0000;

constexpr std::array<container, 8> containers{{
    {".flac", "FLAC", SF_FORMAT_FLAC, any_size},
    {".ogg", "Ogg Vorbis", SF_FORMAT_OGG | SF_FORMAT_VORBIS, any_size},
    {".oga", "Ogg Vorbis", SF_FORMAT_OGG | SF_FORMAT_VORBIS, any_size},
    {".mp3", "MP3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, any_size},
    {".aiff", "AIFF", SF_FORMAT_AIFF, four_gib_less_header},
    {".aif", "AIFF", SF_FORMAT_AIFF, four_gib_less_header},
    {".caf", "CAF", SF_FORMAT_CAF, any_size},
    {".w64", "W64", SF_FORMAT_W64, any_size},
}};

struct coding {
    std::string_view name;
    int sndfile_format;
};

coding coding_of(sample_encoding encoding) {
    switch (encoding) {
    case sample_encoding::pcm16:
        return {"16-bit PCM", SF_FORMAT_PCM_16};
    case sample_encoding::pcm24:
        return {"24-bit PCM", SF_FORMAT_PCM_24};
    case sample_encoding::pcm32:
        return {"32-bit PCM", SF_FORMAT_PCM_32};
    case sample_encoding::float32:
        return {"32-bit float", SF_FORMAT_FLOAT};
    case sample_encoding::float64:
        break;
    }
    return {"64-bit float", SF_FORMAT_DOUBLE};
}

bool is_possible(int sndfile_format, std::uint32_t channels) {
    SF_INFO info{};
    info.format = sndfile_format;
    info.samplerate = 48000;
    info.channels = static_cast<int>(channels);
    return sf_format_check(&info) != 0;
}

/// The library tells it of MP3 alone, and too late, and says that the format is unknown when its Vorbis encoder
/// refuses.
bool is_possible_rate(const container& kind, std::uint32_t sample_rate_hz) {
    constexpr std::array<std::uint32_t, 9> mp3_rates_hz{8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000};
    constexpr std::uint32_t highest_vorbis_rate_hz = 200'000;
    switch (kind.sndfile_format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_MPEG:
        return std::find(mp3_rates_hz.begin(), mp3_rates_hz.end(), sample_rate_hz) != mp3_rates_hz.end();
    case SF_FORMAT_OGG:
        return sample_rate_hz <= highest_vorbis_rate_hz;
    default:
        return true;
    }
}

std::string cannot_hold(const container& kind, std::string_view what) {
    return std::string(kind.name).append(" cannot hold ").append(what);
}

int with_encoding(const std::filesystem::path& target, const container& kind, std::optional<sample_encoding> encoding) {
    if ((kind.sndfile_format & SF_FORMAT_SUBMASK) != 0) {
        if (encoding) {
            throw audio_error(target, std::string(kind.name) + " has its own encoding and takes no other");
        }
        return kind.sndfile_format;
    }
    const coding chosen = coding_of(encoding.value_or(sample_encoding::pcm24));
    const int sndfile_format = kind.sndfile_format | chosen.sndfile_format;
    if (!is_possible(sndfile_format, 1)) {
        throw audio_error(target, cannot_hold(kind, std::string(chosen.name) + " samples"));
    }
    return sndfile_format;
}

} // namespace

const container& container_for(const std::filesystem::path& target) {
    const std::string extension = lower_extension(target);
    const auto found = std::find_if(containers.begin(), containers.end(),
                                    [&](const container& kind) { return kind.extension == extension; });
    if (found == containers.end()) {
        throw audio_error(target, "is not a name of a file that can be written: .wav, .rf64, .w64, .caf, .aiff, .flac, "
                                  ".ogg or .mp3");
    }
    return *found;
}

int sndfile_format_of(const std::filesystem::path& target, const container& kind, const audio_format& format,
                      std::optional<sample_encoding> encoding) {
    const int sndfile_format = with_encoding(target, kind, encoding);
    if (!is_possible(sndfile_format, format.channels)) {
        throw audio_error(target, cannot_hold(kind, std::to_string(format.channels) + " channels"));
    }
    if (!is_possible_rate(kind, format.sample_rate_hz)) {
        throw audio_error(target, cannot_hold(kind, std::to_string(format.sample_rate_hz) + " Hz"));
    }
    return sndfile_format;
}

} // namespace host
