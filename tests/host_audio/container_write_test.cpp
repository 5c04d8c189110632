// Files that ffmpeg reads, with a tone of its own in each speaker.
#include "host/audio/audio_error.h"
#include "host/audio/audio_writer.h"
#include "host/audio/channel_order.h"
#include "host/audio/default_mask.h"
#include "tests/host_audio/support/peer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace host {
namespace {

using testing_support::heard_tones;
using testing_support::in_order;
using testing_support::make_tones;
using testing_support::read_audio;
using testing_support::thrown_text;
using testing_support::write_audio;

struct layout_case {
    const char* file;
    std::uint32_t mask;
    const char* layout; ///< as ffmpeg names what it reads
};

void PrintTo(const layout_case& printed, std::ostream* out) {
    *out << printed.file << ' ' << printed.layout;
}

class WritingAContainer : public testing::TestWithParam<layout_case> {
protected:
    testing_support::temporary_folder folder;
};

TEST_P(WritingAContainer, GivesEachSpeakerItsChannel) {
    const auto& [file, mask, layout] = GetParam();
    const auto channels = static_cast<std::uint32_t>(std::popcount(mask));
    write_audio(folder / file, {{48000, channels, mask}, make_tones(channels)});
    EXPECT_EQ(testing_support::ffmpeg_layout(folder / file), layout);
    std::vector<double> peer = testing_support::ffmpeg_read(folder / file);
    ASSERT_GE(peer.size(), 47000U * channels) << "ffmpeg drops the end of a Vorbis stream";
    peer.resize(std::size_t{48000} * channels);
    EXPECT_EQ(heard_tones(peer, channels), in_order(channels));
    const auto [format, samples] = read_audio(folder / file);
    EXPECT_EQ(format, (audio_format{48000, channels, mask}));
    EXPECT_EQ(heard_tones(samples, channels), in_order(channels));
}

/// FLAC's 5.0 and 5.1 and the layout tags of AIFF and CAF have one surround pair. ffmpeg takes it for the side pair
/// where the default mask has the back pair.
const std::vector<layout_case> layouts{
    {"a.wav", 0x4, "mono"},
    {"a.wav", 0x3, "stereo"},
    {"a.wav", 0x33, "quad"},
    {"a.wav", 0x603, "quad(side)"},
    {"a.wav", 0x3F, "5.1"},
    {"a.wav", 0x60F, "5.1(side)"},
    {"a.wav", 0x63F, "7.1"},
    {"a.wav", 0x1, "1 channels (FL)"},
    {"a.rf64", 0x4, "mono"},
    {"a.rf64", 0x3, "stereo"},
    {"a.rf64", 0x33, "quad"},
    {"a.rf64", 0x3F, "5.1"},
    {"a.rf64", 0x63F, "7.1"},
    {"a.flac", 0x4, "mono"},
    {"a.flac", 0x3, "stereo"},
    {"a.flac", 0x7, "3.0"},
    {"a.flac", 0x33, "quad"},
    {"a.flac", 0x37, "5.0(side)"},
    {"a.flac", 0x3F, "5.1(side)"},
    {"a.flac", 0x70F, "6.1"},
    {"a.flac", 0x63F, "7.1"},
    {"a.ogg", 0x4, "mono"},
    {"a.ogg", 0x3, "stereo"},
    {"a.ogg", 0x7, "3.0"},
    {"a.ogg", 0x33, "quad"},
    {"a.ogg", 0x37, "5.0"},
    {"a.ogg", 0x3F, "5.1"},
    {"a.ogg", 0x70F, "6.1"},
    {"a.ogg", 0x63F, "7.1"},
    {"a.oga", 0x3F, "5.1"},
    {"a.aiff", 0x3, "stereo"},
    {"a.aiff", 0x33, "quad"},
    {"a.aiff", 0x3F, "5.1(side)"},
    {"a.aif", 0x3F, "5.1(side)"},
    {"a.aiff", 0x13F, "6.1"},
    {"a.caf", 0x3, "stereo"},
    {"a.caf", 0x33, "quad"},
    {"a.caf", 0x3F, "5.1(side)"},
    // No layout is recorded: the default mask.
    {"a.aiff", 0x4, "unknown"},
    {"a.aiff", 0x63F, "unknown"},
    {"a.caf", 0x4, "unknown"},
    {"a.caf", 0x63F, "unknown"},
    {"a.w64", 0x4, "unknown"},
    {"a.w64", 0x3, "unknown"},
    {"a.w64", 0x33, "unknown"},
    {"a.w64", 0x3F, "unknown"},
    {"a.w64", 0x63F, "unknown"},
    {"a.mp3", 0x4, "mono"},
    {"a.mp3", 0x3, "stereo"},
};

INSTANTIATE_TEST_SUITE_P(All, WritingAContainer, testing::ValuesIn(layouts));

class Containers : public testing::Test {
protected:
    std::string refusal(const char* file, const audio_format& format,
                        std::optional<sample_encoding> encoding = std::nullopt) const {
        return thrown_text<audio_error>([&] { write_audio(folder / file, {format, {}}, encoding); });
    }

    testing_support::temporary_folder folder;
};

TEST_F(Containers, EveryMaskIsEitherReadBackOrRefused) {
    for (const char* const file : {"a.wav", "a.aiff", "a.caf", "a.w64", "a.flac"}) {
        int refused = 0;
        for (std::uint32_t mask = 1; mask < 0x800; mask += mask < 0x40 ? 1 : 13) {
            const auto channels = static_cast<std::uint32_t>(std::popcount(mask));
            const std::string error = refusal(file, {48000, channels, mask});
            if (error == "nothing thrown") {
                ASSERT_EQ(read_audio(folder / file).format.channel_mask, mask) << file;
            } else {
                ASSERT_NE(error.find(" cannot "), std::string::npos) << error;
                ++refused;
            }
        }
        EXPECT_EQ(refused == 0, file == std::string_view("a.wav")) << file;
    }
}

TEST_F(Containers, TheDefaultMaskIsNeverRefusedWhereNothingElseIsPrescribed) {
    for (const char* const file : {"a.wav", "a.rf64", "a.aiff", "a.caf", "a.w64"}) {
        for (std::uint32_t channels = 1; channels <= 32; ++channels) {
            const audio_format format{48000, channels, default_mask(channels)};
            EXPECT_EQ(refusal(file, format), "nothing thrown") << file << ' ' << channels;
            EXPECT_EQ(read_audio(folder / file).format, format) << file;
        }
    }
}

TEST_F(Containers, NoSamplesAreAFileToo) {
    for (const char* const file : {"a.wav", "a.rf64", "a.aiff", "a.caf", "a.w64", "a.flac", "a.ogg", "a.mp3"}) {
        write_audio(folder / file, {{48000, 2, 0x3}, {}});
        const auto [format, samples] = read_audio(folder / file);
        EXPECT_EQ(format, (audio_format{48000, 2, 0x3})) << file;
        EXPECT_TRUE(samples.empty()) << file;
    }
}

TEST_F(Containers, EncodingsThatAContainerHasNotAreRefusedByName) {
    const audio_format stereo{48000, 2, 0x3};
    const struct {
        const char* file;
        sample_encoding encoding;
        const char* reason;
    } cases[]{
        {"a.flac", sample_encoding::pcm32, "FLAC cannot hold 32-bit PCM samples"},
        {"a.flac", sample_encoding::float32, "FLAC cannot hold 32-bit float samples"},
        {"a.flac", sample_encoding::float64, "FLAC cannot hold 64-bit float samples"},
        {"a.ogg", sample_encoding::pcm16, "Ogg Vorbis has its own encoding and takes no other"},
        {"a.mp3", sample_encoding::float32, "MP3 has its own encoding and takes no other"},
    };
    for (const auto& [file, encoding, reason] : cases) {
        EXPECT_EQ(refusal(file, stereo, encoding), (folder / file).string() + ": " + reason);
    }
    EXPECT_EQ(folder.entries(), 0U);
}

TEST_F(Containers, FormatsThatAContainerHasNotAreRefusedByName) {
    EXPECT_NE(refusal("a.flac", {48000, 9, 0x1FF}).find("FLAC cannot hold 9 channels"), std::string::npos);
    EXPECT_NE(refusal("a.mp3", {48000, 6, 0x3F}).find("MP3 cannot hold 6 channels"), std::string::npos);
    EXPECT_NE(refusal("a.mp3", {96000, 2, 0x3}).find("MP3 cannot hold 96000 Hz"), std::string::npos);
    EXPECT_EQ(refusal("a.flac", {48000, 6, 0x60F}),
              (folder / "a.flac").string() +
                  ": FLAC cannot record 5.1 (side); it would be read back as 5.1: write .wav, or add -e "
                  "layout_converter:mask=5.1");
    const struct {
        audio_format format;
        const char* advice;
    } cases[]{
        {{48000, 4, 0x603}, "read back as quad: write .wav, or add -e layout_converter:mask=quad"},
        {{48000, 7, 0x13F}, "read back as 6.1: write .wav, or add -e layout_converter:mask=6.1"},
        {{48000, 3, 0xB}, "read back as 3.0: write .wav"}, // a 3.0 would lose the low frequencies
        {{48000, 6, 0x43B}, "read back as 5.1: write .wav"},
        {{48000, 4, 0x423}, "read back as quad: write .wav"}, // one back and one side speaker
    };
    for (const auto& [format, advice] : cases) {
        EXPECT_TRUE(refusal("a.flac", format).ends_with(advice)) << refusal("a.flac", format);
    }
}

/// What is no number, or far above all full scales, ends the process or spoils the frames around it in an encoder.
TEST_F(Containers, LossyFilesTakeAnySample) {
    constexpr double limit = 16.0;
    const std::vector<double> quiet = testing_support::noise(40'000, 0.1);
    for (const double wild : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e10,
                              1e300, 17.0, 16.0}) {
        std::vector<double> samples = quiet;
        std::fill_n(samples.begin() + 20'000, 200, wild);
        std::vector<double> tame = quiet;
        std::fill_n(tame.begin() + 20'000, 200, std::isnan(wild) ? 0.0 : std::clamp(wild, -limit, limit));
        for (const char* const file : {"a.mp3", "a.ogg"}) {
            write_audio(folder / file, {{48000, 2, 0x3}, samples});
            const std::vector<double> read = read_audio(folder / file).samples;
            write_audio(folder / file, {{48000, 2, 0x3}, tame});
            EXPECT_EQ(read, read_audio(folder / file).samples) << file << ' ' << wild;
        }
    }
}

TEST_F(Containers, LossyFilesKeepWhatIsAboveFullScale) {
    for (const char* const file : {"a.mp3", "a.ogg"}) {
        std::vector<double> samples = make_tones(1);
        constexpr double peak = 15.0; // close below the limit
        const double gain = peak / *std::max_element(samples.begin(), samples.end());
        std::transform(samples.begin(), samples.end(), samples.begin(), [=](double sample) { return gain * sample; });
        write_audio(folder / file, {{48000, 1, 0x4}, samples});
        const std::vector<double> read = read_audio(folder / file).samples;
        EXPECT_NEAR(*std::max_element(read.begin(), read.end()), peak, 0.05 * peak) << file;
    }
}

TEST_F(Containers, IntegersAreTheSameInAllContainers) {
    const std::vector<double> samples = testing_support::noise(20'000, 1.1);
    for (const sample_encoding encoding : {sample_encoding::pcm16, sample_encoding::pcm24, sample_encoding::pcm32}) {
        write_audio(folder / "a.wav", {{48000, 2, 0x3}, samples}, encoding);
        const std::vector<double> expected = read_audio(folder / "a.wav").samples;
        for (const char* const file : {"a.rf64", "a.aiff", "a.caf", "a.w64", "a.flac"}) {
            if (refusal(file, {48000, 2, 0x3}, encoding) == "nothing thrown") {
                write_audio(folder / file, {{48000, 2, 0x3}, samples}, encoding);
                EXPECT_EQ(read_audio(folder / file).samples, expected) << file;
            }
        }
    }
}

TEST_F(Containers, FloatsPassUnchangedAboveFullScaleToo) {
    const std::vector<double> samples = testing_support::noise(20'000, 4.0);
    std::vector<double> single(samples.size());
    std::transform(samples.begin(), samples.end(), single.begin(),
                   [](double sample) { return static_cast<double>(static_cast<float>(sample)); });
    for (const char* const file : {"a.wav", "a.rf64", "a.aiff", "a.caf", "a.w64"}) {
        write_audio(folder / file, {{48000, 2, 0x3}, samples}, sample_encoding::float64);
        EXPECT_EQ(read_audio(folder / file).samples, samples) << file;
        write_audio(folder / file, {{48000, 2, 0x3}, samples}, sample_encoding::float32);
        EXPECT_EQ(read_audio(folder / file).samples, single) << file;
    }
}

TEST_F(Containers, LossyOnesSoundTheSame) {
    for (const char* const file : {"a.ogg", "a.mp3"}) {
        const std::vector<double> tones = make_tones(2);
        write_audio(folder / file, {{48000, 2, 0x3}, tones});
        const std::vector<double> back = read_audio(folder / file).samples;
        ASSERT_GE(back.size(), tones.size()) << file;
        double error = 0.0;
        for (std::size_t i = 0; i < tones.size(); ++i) {
            error += (back[i] - tones[i]) * (back[i] - tones[i]);
        }
        EXPECT_LT(std::sqrt(error / static_cast<double>(tones.size())), 0.02) << file;
    }
}

} // namespace
} // namespace host
