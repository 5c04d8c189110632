// Our WAV files against those of libsndfile, ffmpeg and sox.
#include "host/audio/riff_audio.h"

#include "host/audio/riff_header.h"
#include "tests/host_audio/support/peer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <bit>
#include <cmath>
#include <limits>
#include <memory>

namespace host {
namespace {

using testing_support::bits_of;
using testing_support::noise;
using testing_support::output_of;
using testing_support::quoted;

struct sndfile_closer {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};

using sndfile = std::unique_ptr<SNDFILE, sndfile_closer>;

/// The library's names of front left to back right, and of the side pair.
const std::vector<int> map_of_7_1{SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_RIGHT,     SF_CHANNEL_MAP_CENTER,
                                  SF_CHANNEL_MAP_LFE,       SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT,
                                  SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT};

struct peer_audio {
    SF_INFO info{};
    std::vector<int> map;
    std::vector<double> samples;
};

peer_audio peer_read(const std::filesystem::path& file) {
    peer_audio content;
    const sndfile opened(sf_open(file.c_str(), SFM_READ, &content.info));
    EXPECT_NE(opened, nullptr) << file;
    content.samples.resize(static_cast<std::size_t>(content.info.frames * content.info.channels));
    EXPECT_EQ(sf_readf_double(opened.get(), content.samples.data(), content.info.frames), content.info.frames);
    content.map.resize(static_cast<std::size_t>(content.info.channels));
    sf_command(opened.get(), SFC_GET_CHANNEL_MAP_INFO, content.map.data(),
               static_cast<int>(content.map.size() * sizeof(int)));
    return content;
}

void peer_write(const std::filesystem::path& file, int format, std::vector<int> map,
                const std::vector<double>& samples) {
    SF_INFO info{};
    info.format = format;
    info.samplerate = 44100;
    info.channels = static_cast<int>(map.size());
    const sndfile opened(sf_open(file.c_str(), SFM_WRITE, &info));
    ASSERT_NE(opened, nullptr) << sf_strerror(nullptr);
    sf_command(opened.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(), static_cast<int>(map.size() * sizeof(int)));
    sf_command(opened.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    ASSERT_EQ(sf_write_double(opened.get(), samples.data(), static_cast<sf_count_t>(samples.size())),
              static_cast<sf_count_t>(samples.size()));
}

struct encoding_case {
    const char* name;
    sample_encoding ours;
    int peers;
    const char* ffmpeg;
};

constexpr encoding_case encodings[]{
    {"pcm16", sample_encoding::pcm16, SF_FORMAT_PCM_16, "pcm_s16le"},
    {"pcm24", sample_encoding::pcm24, SF_FORMAT_PCM_24, "pcm_s24le"},
    {"pcm32", sample_encoding::pcm32, SF_FORMAT_PCM_32, "pcm_s32le"},
    {"float32", sample_encoding::float32, SF_FORMAT_FLOAT, "pcm_f32le"},
    {"float64", sample_encoding::float64, SF_FORMAT_DOUBLE, "pcm_f64le"},
};

class RiffPeers : public testing::Test {
protected:
    void write(const std::filesystem::path& file, const audio_format& format, const std::vector<double>& samples,
               sample_encoding encoding, std::uint64_t limit_bytes = riff_limit_bytes) const {
        const auto writer = create_riff(file, format, encoding, limit_bytes);
        writer->write(samples);
        writer->commit();
    }

    testing_support::temporary_folder folder;
};

TEST_F(RiffPeers, ReadWhatLibsndfileWrites) {
    const std::vector<double> samples = noise(24'008, 1.1);
    for (const int container : {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_RF64}) {
        for (const auto& [name, ours, peers, ffmpeg] : encodings) {
            peer_write(folder / "peer.wav", container | peers, map_of_7_1, samples);
            const auto reader = open_riff(folder / "peer.wav");
            EXPECT_EQ(reader->format(), (audio_format{44100, 8, 0x63F})) << name;
            EXPECT_EQ(reader->declared_frames(), 3001U) << name;
            EXPECT_EQ(bits_of(testing_support::read_to_end(*reader)), bits_of(peer_read(folder / "peer.wav").samples))
                << name;
        }
    }
    peer_write(folder / "peer.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, map_of_7_1, samples);
    EXPECT_EQ(testing_support::read_audio(folder / "peer.wav").samples, peer_read(folder / "peer.wav").samples);
}

TEST_F(RiffPeers, LibsndfileReadsWhatWeWrite) {
    const std::vector<double> samples = noise(24'008, 1.1);
    for (const std::uint64_t limit_bytes : {riff_limit_bytes, std::uint64_t{0}}) {
        for (const auto& [name, ours, peers, ffmpeg] : encodings) {
            write(folder / "ours.wav", {96000, 8, 0x63F}, samples, ours, limit_bytes);
            const peer_audio peer = peer_read(folder / "ours.wav");
            EXPECT_EQ(peer.info.samplerate, 96000) << name;
            EXPECT_EQ(peer.info.format & SF_FORMAT_SUBMASK, peers) << name;
            EXPECT_EQ(peer.map, map_of_7_1) << name;
            EXPECT_EQ(bits_of(peer.samples), bits_of(testing_support::read_audio(folder / "ours.wav").samples)) << name;
        }
    }
}

TEST_F(RiffPeers, SamplesThatAnEncodingCanHoldAreWrittenAsLibsndfileWritesThem) {
    const struct {
        const encoding_case& encoding;
        double step;
    } cases[]{{encodings[0], 1 / 32768.0},
              {encodings[1], 1 / 8388608.0},
              {encodings[2], 1 / 2147483648.0},
              {encodings[3], 0x1p-20},
              {encodings[4], 0x1p-50}};
    for (const auto& [encoding, step] : cases) {
        std::vector<double> samples = noise(20'000, 1.5);
        for (double& sample : samples) {
            sample = std::floor(sample / step) * step;
        }
        peer_write(folder / "peer.wav", SF_FORMAT_WAVEX | encoding.peers, {SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT},
                   samples);
        write(folder / "ours.wav", {44100, 2, 0x3}, samples, encoding.ours);
        EXPECT_EQ(bits_of(peer_read(folder / "ours.wav").samples), bits_of(peer_read(folder / "peer.wav").samples))
            << encoding.name;
    }
}

TEST_F(RiffPeers, SamplesBetweenTheStepsAreRoundedAsFfmpegRoundsThem) {
    const std::vector<double> samples = noise(20'000, 1.2);
    write(folder / "in.wav", {44100, 2, 0x3}, samples, sample_encoding::float64);
    // ffmpeg makes 24 bits by cutting off 32: no peer for rounding.
    for (const encoding_case& encoding : {encodings[0], encodings[2], encodings[3]}) {
        output_of("ffmpeg -v error -nostdin -y -i " + quoted(folder / "in.wav") + " -c:a " + encoding.ffmpeg + " " +
                  quoted(folder / "peer.wav"));
        write(folder / "ours.wav", {44100, 2, 0x3}, samples, encoding.ours);
        EXPECT_EQ(bits_of(testing_support::read_audio(folder / "ours.wav").samples),
                  bits_of(testing_support::read_audio(folder / "peer.wav").samples))
            << encoding.name;
    }
}

TEST_F(RiffPeers, MasksAreThoseOfLibsndfile) {
    const struct {
        int name;
        std::uint32_t speaker;
    } speakers[]{{SF_CHANNEL_MAP_LEFT, 0x1},          {SF_CHANNEL_MAP_CENTER, 0x4},
                 {SF_CHANNEL_MAP_LFE, 0x8},           {SF_CHANNEL_MAP_REAR_RIGHT, 0x20},
                 {SF_CHANNEL_MAP_REAR_CENTER, 0x100}, {SF_CHANNEL_MAP_SIDE_LEFT, 0x200},
                 {SF_CHANNEL_MAP_TOP_CENTER, 0x800},  {SF_CHANNEL_MAP_TOP_REAR_RIGHT, 0x20000}};
    for (const auto& [name, speaker] : speakers) {
        peer_write(folder / "peer.wav", SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, {name}, {0.0});
        EXPECT_EQ(open_riff(folder / "peer.wav")->format().channel_mask, speaker) << name;
        write(folder / "ours.wav", {44100, 1, speaker}, {0.0}, sample_encoding::pcm24);
        EXPECT_EQ(peer_read(folder / "ours.wav").map, std::vector<int>{name});
    }
}

TEST_F(RiffPeers, StreamsThatOtherProgramsPipeGoToTheirEnd) {
    const std::string tone = "sine=440:r=44100:d=1";
    for (const char* const options : {"", "-rf64 auto", "-rf64 always"}) {
        output_of("ffmpeg -v error -nostdin -f lavfi -i " + tone + " -f wav " + options + " - | cat > " +
                  quoted(folder / "piped.wav"));
        EXPECT_EQ(open_riff(folder / "piped.wav")->declared_frames(), 44100U) << options;
    }
    for (const char* const bits : {"16", "24"}) {
        output_of("sox -V1 -n -r 44100 -c 2 -b " + std::string(bits) + " -t wav - synth 1 sine 440 | cat > " +
                  quoted(folder / "piped.wav"));
        EXPECT_EQ(open_riff(folder / "piped.wav")->declared_frames(), 44100U) << "sox " << bits;
    }
}

TEST_F(RiffPeers, ReadsPastFourGibibytes) {
    constexpr std::uint64_t frames = 0x20000000; // 4 GiB of pcm24 stereo would be 0x2AAAAAAA
    constexpr std::uint64_t data_bytes = frames * 12;
    const auto header = make_riff_header({48000, 4, 0x33}, {false, 3}, data_bytes, riff_limit_bytes);
    testing_support::write_bytes(folder / "long.wav", {reinterpret_cast<const char*>(header.data()), header.size()});
    std::filesystem::resize_file(folder / "long.wav", header.size() + data_bytes); // a hole takes no room
    const auto reader = open_riff(folder / "long.wav");
    EXPECT_EQ(reader->declared_frames(), frames);
    EXPECT_EQ(reader->format(), (audio_format{48000, 4, 0x33}));
    SF_INFO info{};
    const sndfile peer(sf_open((folder / "long.wav").c_str(), SFM_READ, &info));
    EXPECT_EQ(static_cast<std::uint64_t>(info.frames), frames);
}

} // namespace
} // namespace host
