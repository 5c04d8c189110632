#include "host/audio/audio_error.h"
#include "host/audio/riff_audio.h"
#include "host/audio/riff_header.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr std::size_t block_bytes = 65536;

class riff_reader final : public audio_reader {
public:
    riff_reader(binary_file file, const riff_header& header)
        : file_(std::move(file)), format_(header.format), samples_(*header.samples),
          frames_(header.data_size_bytes / frame_bytes()), frames_left_(frames_) {
        file_.seek(header.data_begin_bytes);
    }

    audio_format format() const override { return format_; }
    std::optional<std::uint64_t> declared_frames() const override { return frames_; }

    std::size_t read(std::span<double> interleaved) override {
        const std::size_t room = interleaved.size() / format_.channels;
        const auto frames = static_cast<std::size_t>(std::min<std::uint64_t>(room, frames_left_));
        const std::size_t block_frames = block_bytes / frame_bytes();
        for (std::size_t done = 0; done < frames; done += block_frames) {
            const std::size_t block = std::min(block_frames, frames - done);
            read_block(interleaved.subspan(done * format_.channels, block * format_.channels));
        }
        frames_left_ -= frames;
        return frames;
    }

private:
    std::size_t frame_bytes() const noexcept { return format_.channels * samples_.bytes; }

    void read_block(std::span<double> samples) {
        const auto bytes = std::span(block_).first(samples.size() * samples_.bytes);
        if (file_.read(bytes) != bytes.size()) {
            throw audio_error(file_.path(), "ends while it is being read");
        }
        decode_samples(samples_, bytes, samples);
    }

    binary_file file_;
    audio_format format_;
    sample_layout samples_;
    std::uint64_t frames_;
    std::uint64_t frames_left_;
    std::array<std::byte, block_bytes> block_;
};

} // namespace

std::unique_ptr<audio_reader> open_riff(const std::filesystem::path& file) {
    binary_file opened(file);
    const auto header = read_riff_header(opened);
    if (!header || !header->samples) {
        return nullptr;
    }
    return std::make_unique<riff_reader>(std::move(opened), *header);
}

} // namespace host
