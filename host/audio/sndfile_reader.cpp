#include "host/audio/audio_error.h"
#include "host/audio/cut_check.h"
#include "host/audio/file_speakers.h"
#include "host/audio/mpeg_declaration.h"
#include "host/audio/sndfile_audio.h"
#include "host/audio/sndfile_handle.h"
#include "host/audio/sndfile_speakers.h"
#include "host/audio/sndfile_stream.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

namespace host {

namespace {

constexpr const char* not_audio = "is not audio of a known kind";

/// "File does not exist or is not a regular file": what becomes of the MPEG decoder's refusal. The library's header has
/// no name for it.
constexpr int mpeg_decoder_refused = 7;

std::string reason_not_opened() {
    switch (sf_error(nullptr)) {
    case SF_ERR_UNRECOGNISED_FORMAT:
        return not_audio;
    case SF_ERR_MALFORMED_FILE:
        return "is damaged or cut short";
    case mpeg_decoder_refused:
        return "is damaged, or not audio of a known kind";
    case SF_ERR_UNSUPPORTED_ENCODING:
        return "is coded in a way that cannot be read";
    default:
        return "cannot be read: " + sndfile_reason(nullptr);
    }
}

/// A file that libsndfile takes, and what it tells of it.
struct opened_sndfile {
    explicit opened_sndfile(binary_file& bytes) : path(bytes.path()) {
        if (auto missing = missing_declaration(bytes)) {
            stream = std::make_unique<sndfile_stream>(path, std::move(missing->frame), missing->audio_begin_bytes);
        }
        handle.reset(stream ? stream->open(info) : sf_open(path.c_str(), SFM_READ, &info));
        if (!handle) {
            throw audio_error(path, reason_not_opened());
        }
        if (container() == SF_FORMAT_RAW) { // guessed from the name alone
            throw audio_error(path, not_audio);
        }
        if (channels() > most_channels) {
            throw audio_error(path, "has " + std::to_string(channels()) + " channels; at most " +
                                        std::to_string(most_channels) + " can be read");
        }
    }

    std::uint32_t channels() const { return static_cast<std::uint32_t>(info.channels); }
    int container() const { return info.format & SF_FORMAT_TYPEMASK; }

    /// The library's way to say that the length is not told.
    bool is_endless() const { return info.frames == SF_COUNT_MAX; }

    /// The length that an MP3 claims, also one in a WAV, is often an estimate.
    bool is_mpeg() const {
        const int coding = info.format & SF_FORMAT_SUBMASK;
        return coding >= SF_FORMAT_MPEG_LAYER_I && coding <= SF_FORMAT_MPEG_LAYER_III;
    }

    std::filesystem::path path;
    SF_INFO info{};
    std::unique_ptr<sndfile_stream> stream; ///< of a file that is not read as it is
    sndfile_handle handle;
};

speaker_list mapped_speakers(const opened_sndfile& file) {
    std::vector<int> map(file.channels());
    const int bytes = static_cast<int>(map.size() * sizeof(int));
    if (sf_command(file.handle.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(), bytes) == SF_FALSE) {
        return {};
    }
    return speakers_of_map(map);
}

/// Of an AIFF file the library must not be asked: where the CHAN chunk comes first, its map is shorter than the file
/// has channels, and it copies what lies behind it.
speaker_list named_speakers(const opened_sndfile& file, binary_file& bytes) {
    switch (file.container()) {
    case SF_FORMAT_AIFF:
        return aiff_speakers(bytes);
    case SF_FORMAT_FLAC:
        return flac_speakers(bytes);
    default:
        return mapped_speakers(file);
    }
}

/// The speakers that the file names, if it names as many as it has channels, else those that its kind prescribes.
speaker_list find_speakers(const opened_sndfile& file, binary_file& bytes) {
    speaker_list named = named_speakers(file, bytes);
    const bool is_usable = named.size() == file.channels() && mask_of(named);
    return is_usable ? named : prescribed_speakers(file.info.format, file.channels());
}

class sndfile_reader final : public audio_reader {
public:
    sndfile_reader(opened_sndfile file, const speaker_list& speakers)
        : file_(std::move(file)), format_{static_cast<std::uint32_t>(file_.info.samplerate), file_.channels(),
                                          std::accumulate(speakers.begin(), speakers.end(), 0U)},
          order_(to_mask_order(speakers)) {}

    audio_format format() const override { return format_; }

    std::optional<std::uint64_t> declared_frames() const override {
        return file_.is_endless() ? std::nullopt : std::optional(static_cast<std::uint64_t>(file_.info.frames));
    }

    std::size_t read(std::span<double> interleaved) override {
        const std::size_t room = std::min(interleaved.size() / format_.channels, most_frames_left());
        const auto frames = static_cast<std::size_t>(
            sf_readf_double(file_.handle.get(), interleaved.data(), static_cast<sf_count_t>(room)));
        frames_read_ += frames;
        if (sf_error(file_.handle.get()) != SF_ERR_NO_ERROR) {
            throw audio_error(file_.path, "is damaged or cut short: " + sndfile_reason(file_.handle.get()));
        }
        if (frames < room) {
            check_is_whole();
        }
        reorder(interleaved.first(frames * format_.channels), order_);
        return frames;
    }

private:
    std::optional<std::uint64_t> exact_length() const { return file_.is_mpeg() ? std::nullopt : declared_frames(); }

    /// Past them may lie what is no audio, a tag for instance, which a decoder would take for damaged audio.
    std::size_t most_frames_left() const {
        const auto length = exact_length();
        return length ? static_cast<std::size_t>(*length - frames_read_) : std::numeric_limits<std::size_t>::max();
    }

    void check_is_whole() const {
        const auto length = exact_length();
        if (length && frames_read_ < *length) {
            throw audio_error(file_.path, "is cut short: of " + std::to_string(*length) + " frames only " +
                                              std::to_string(frames_read_) + " are there");
        }
    }

    opened_sndfile file_;
    audio_format format_;
    channel_order order_;
    std::uint64_t frames_read_ = 0;
};

} // namespace

std::unique_ptr<audio_reader> open_sndfile(const std::filesystem::path& file) {
    binary_file bytes(file);
    check_is_not_cut(bytes);
    opened_sndfile opened(bytes);
    const speaker_list speakers = find_speakers(opened, bytes);
    return std::make_unique<sndfile_reader>(std::move(opened), speakers);
}

} // namespace host
