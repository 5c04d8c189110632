#include "host/audio/audio_error.h"
#include "host/audio/channel_order.h"
#include "host/audio/default_mask.h"
#include "host/audio/pending_file.h"
#include "host/audio/riff_audio.h"
#include "host/audio/riff_header.h"
#include "host/audio/speaker_check.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

namespace host {

namespace {

constexpr std::size_t block_samples = 8192;

sample_layout layout_of(sample_encoding encoding) {
    switch (encoding) {
    case sample_encoding::pcm16:
        return {false, 2};
    case sample_encoding::pcm24:
        return {false, 3};
    case sample_encoding::pcm32:
        return {false, 4};
    case sample_encoding::float32:
        return {true, 4};
    case sample_encoding::float64:
        break;
    }
    return {true, 8};
}

class riff_writer final : public audio_writer {
public:
    riff_writer(const std::filesystem::path& target, const audio_format& format, sample_encoding encoding,
                std::uint64_t limit_bytes)
        : file_(target), format_(format), samples_(layout_of(encoding)), limit_bytes_(limit_bytes),
          stream_(file_.temporary(), std::ios::binary) {
        put_header();
    }

    void write(std::span<const double> interleaved) override {
        for (std::size_t done = 0; done < interleaved.size(); done += block_samples) {
            const auto samples = interleaved.subspan(done, std::min(block_samples, interleaved.size() - done));
            const auto bytes = std::span(block_).first(samples.size() * samples_.bytes);
            encode_samples(samples_, samples, bytes);
            put(bytes);
        }
        data_size_bytes_ += interleaved.size() * samples_.bytes;
    }

    void commit() override {
        if (data_size_bytes_ % 2 != 0) {
            put(std::array{std::byte{0}});
        }
        stream_.seekp(0);
        put_header();
        stream_.close();
        check_stream();
        file_.commit();
    }

private:
    void put_header() { put(make_riff_header(format_, samples_, data_size_bytes_, limit_bytes_)); }

    void put(std::span<const std::byte> bytes) {
        errno = 0;
        // A byte may be looked at through any character type.
        stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        check_stream();
    }

    void check_stream() const {
        if (!stream_) {
            const std::string reason = std::generic_category().message(errno != 0 ? errno : EIO);
            throw audio_error(file_.target(), "cannot be written: " + reason);
        }
    }

    pending_file file_;
    audio_format format_;
    sample_layout samples_;
    std::uint64_t limit_bytes_;
    std::uint64_t data_size_bytes_ = 0;
    std::ofstream stream_; // closes before file_ is removed
    std::array<std::byte, block_samples * sizeof(double)> block_;
};

} // namespace

std::unique_ptr<audio_writer> create_riff(const std::filesystem::path& target, const audio_format& format,
                                          sample_encoding encoding, std::uint64_t limit_bytes) {
    const std::uint32_t recorded = mask_of(speakers_of(format.channel_mask)).value_or(default_mask(format.channels));
    check_speakers(target, "WAV", format.channel_mask, recorded);
    return std::make_unique<riff_writer>(target, format, encoding, limit_bytes);
}

} // namespace host
