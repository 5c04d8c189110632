#include "host/audio/audio_error.h"
#include "host/audio/pending_file.h"
#include "host/audio/quantise.h"
#include "host/audio/sndfile_audio.h"
#include "host/audio/sndfile_containers.h"
#include "host/audio/sndfile_handle.h"
#include "host/audio/sndfile_output.h"
#include "host/audio/sndfile_speakers.h"
#include "host/audio/speaker_check.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <system_error>
#include <vector>

namespace host {

namespace {

constexpr std::size_t block_frames = 4096;

/// 24 dB over full scale, as loud as the sum of sixteen speakers can be. The lossy formats keep what is above full
/// scale, and who decodes to floating point can still turn it down. What is far above, or no number, breaks their
/// encoders: they end the process, or make noise of the frames around it.
constexpr double most_lossy_magnitude = 16.0;

double bounded(double sample) {
    return std::isnan(sample) ? 0.0 : std::clamp(sample, -most_lossy_magnitude, most_lossy_magnitude);
}

bool is_lossy(int sndfile_format) {
    const int coding = sndfile_format & SF_FORMAT_SUBMASK;
    return coding == SF_FORMAT_VORBIS || coding == SF_FORMAT_MPEG_LAYER_III;
}

/// 0 for encodings that are not integers.
unsigned integer_bits(int sndfile_format) {
    switch (sndfile_format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_16:
        return 16;
    case SF_FORMAT_PCM_24:
        return 24;
    case SF_FORMAT_PCM_32:
        return 32;
    default:
        return 0;
    }
}

/// What compressed samples would have uncompressed is of no interest.
std::size_t sample_bytes_of(int sndfile_format) {
    const bool is_single = (sndfile_format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT;
    const unsigned bits = is_single ? 32 : integer_bits(sndfile_format);
    return bits != 0 ? bits / 8 : 8;
}

SF_INFO info_of(const audio_format& format, int sndfile_format) {
    SF_INFO info{};
    info.samplerate = static_cast<int>(format.sample_rate_hz);
    info.channels = static_cast<int>(format.channels);
    info.format = sndfile_format;
    return info;
}

/// Has the file record the speakers of the mask if its container can; answers the order in which it takes them.
speaker_list record_speakers(const sndfile_handle& file, const audio_format& format, int sndfile_format) {
    std::vector<int> map = map_of(format.channel_mask);
    const int bytes = static_cast<int>(map.size() * sizeof(int));
    if (!map.empty() && sf_command(file.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(), bytes) != SF_FALSE) {
        return speakers_of(format.channel_mask);
    }
    return prescribed_speakers(sndfile_format, format.channels);
}

class sndfile_writer final : public audio_writer {
public:
    sndfile_writer(const std::filesystem::path& target, const container& kind, const audio_format& format,
                   int sndfile_format)
        : pending_(target), output_(pending_.temporary()), kind_(kind), channels_(format.channels),
          bits_(integer_bits(sndfile_format)), is_lossy_(is_lossy(sndfile_format)),
          sample_bytes_(sample_bytes_of(sndfile_format)) {
        SF_INFO info = info_of(format, sndfile_format);
        file_.reset(output_.open(info));
        check(file_ != nullptr);
        const speaker_list speakers = record_speakers(file_, format, sndfile_format);
        check_speakers(target, kind.name, format.channel_mask, std::accumulate(speakers.begin(), speakers.end(), 0U));
        order_ = from_mask_order(speakers);
    }

    void write(std::span<const double> interleaved) override {
        const std::size_t block_samples = block_frames * channels_;
        for (std::size_t done = 0; done < interleaved.size(); done += block_samples) {
            const auto block = interleaved.subspan(done, std::min(block_samples, interleaved.size() - done));
            check_room(block.size());
            ordered_.assign(block.begin(), block.end());
            reorder(ordered_, order_);
            if (is_lossy_) {
                std::transform(ordered_.begin(), ordered_.end(), ordered_.begin(), bounded);
            }
            put_block();
        }
    }

    void commit() override {
        start_without_samples();
        const bool is_closed = sf_close(file_.release()) == SF_ERR_NO_ERROR;
        output_.close();
        check(is_closed);
        pending_.commit();
    }

private:
    /// FLAC and MP3 files begin with their first samples, unless told to. Ogg does not understand that.
    void start_without_samples() {
        if (data_bytes_ == 0 && (kind_.sndfile_format & SF_FORMAT_TYPEMASK) != SF_FORMAT_OGG) {
            sf_command(file_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
        }
    }

    void put_block() {
        const auto samples = static_cast<sf_count_t>(ordered_.size());
        const sf_count_t written = bits_ != 0 ? sf_write_int(file_.get(), quantised(), samples)
                                              : sf_write_double(file_.get(), ordered_.data(), samples);
        check(written == samples);
    }

    /// The system's word on a failure comes before the library's.
    void check(bool is_library_content) const {
        if (output_.system_error() == 0 && is_library_content) {
            return;
        }
        const std::string reason = output_.system_error() != 0 ? std::generic_category().message(output_.system_error())
                                                               : sndfile_reason(file_.get());
        throw audio_error(pending_.target(), "cannot be written: " + reason);
    }

    /// The block as integers. The library takes the highest bits of 32; its own way from floating point to fewer bits
    /// would always round down.
    const int* quantised() {
        integers_.resize(ordered_.size());
        std::transform(ordered_.begin(), ordered_.end(), integers_.begin(), [this](double sample) {
            return static_cast<std::int32_t>(static_cast<std::uint32_t>(quantise(sample, bits_)) << (32 - bits_));
        });
        return integers_.data();
    }

    void check_room(std::size_t samples) {
        data_bytes_ += samples * sample_bytes_;
        if (data_bytes_ > kind_.most_data_bytes) {
            throw audio_error(pending_.target(), std::string(kind_.name) + " cannot hold more than 4 GiB");
        }
    }

    // Each is closed before the ones above it.
    pending_file pending_;
    sndfile_output output_;
    sndfile_handle file_;

    const container& kind_;
    std::size_t channels_;
    unsigned bits_;
    bool is_lossy_;
    std::size_t sample_bytes_;
    std::uint64_t data_bytes_ = 0;
    channel_order order_;
    std::vector<double> ordered_;
    std::vector<int> integers_;
};

} // namespace

std::unique_ptr<audio_writer> create_sndfile(const std::filesystem::path& target, const audio_format& format,
                                             std::optional<sample_encoding> encoding) {
    const container& kind = container_for(target);
    const int sndfile_format = sndfile_format_of(target, kind, format, encoding);
    return std::make_unique<sndfile_writer>(target, kind, format, sndfile_format);
}

} // namespace host
