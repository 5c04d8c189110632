// Files that ffmpeg wrote, with a tone of its own in each speaker.
#include "host/audio/audio_reader.h"
#include "tests/host_audio/support/peer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using namespace std::string_literals;
using testing_support::ffmpeg_write_tones;
using testing_support::heard_tones;
using testing_support::in_order;

struct layout_case {
    const char* file;
    const char* codec;
    const char* layout; ///< as ffmpeg names it
    std::uint32_t channels;
    std::uint32_t mask; ///< as it must be read
};

void PrintTo(const layout_case& printed, std::ostream* out) {
    *out << printed.file << ' ' << printed.layout;
}

class ReadingAContainer : public testing::TestWithParam<layout_case> {
protected:
    testing_support::temporary_folder folder;
};

TEST_P(ReadingAContainer, GivesEachSpeakerItsChannel) {
    const auto& [file, codec, layout, channels, mask] = GetParam();
    ffmpeg_write_tones(folder / file, layout, channels, codec);
    auto [format, samples] = testing_support::read_audio(folder / file);
    EXPECT_EQ(format, (audio_format{48000, channels, mask}));
    EXPECT_GE(samples.size(), 48000U * channels);
    samples.resize(std::size_t{48000} * channels);
    EXPECT_EQ(heard_tones(samples, channels), in_order(channels));
}

std::vector<layout_case> layouts_in(const char* file, const char* codec, std::vector<layout_case> cases) {
    for (layout_case& one : cases) {
        one.file = file;
        one.codec = codec;
    }
    return cases;
}

/// Layouts of containers that record any mask.
const std::vector<layout_case> any_layout{
    {"", "", "mono", 1, 0x4},       {"", "", "stereo", 2, 0x3},      {"", "", "2.1", 3, 0xB},
    {"", "", "3.0", 3, 0x7},        {"", "", "quad", 4, 0x33},       {"", "", "quad(side)", 4, 0x603},
    {"", "", "5.0", 5, 0x37},       {"", "", "5.1", 6, 0x3F},        {"", "", "5.1(side)", 6, 0x60F},
    {"", "", "6.1", 7, 0x70F},      {"", "", "6.1(back)", 7, 0x13F}, {"", "", "7.1", 8, 0x63F},
    {"", "", "7.1(wide)", 8, 0xFF},
};

/// FLAC's 5.1 without a tag is the one with the back pair; ffmpeg writes no tag for the one with the side pair.
const std::vector<layout_case> flac_layouts{
    {"", "", "mono", 1, 0x4},       {"", "", "stereo", 2, 0x3},      {"", "", "2.1", 3, 0xB},
    {"", "", "3.0", 3, 0x7},        {"", "", "quad", 4, 0x33},       {"", "", "quad(side)", 4, 0x603},
    {"", "", "4.0", 4, 0x107},      {"", "", "5.0", 5, 0x37},        {"", "", "5.1", 6, 0x3F},
    {"", "", "6.1", 7, 0x70F},      {"", "", "6.1(back)", 7, 0x13F}, {"", "", "7.1", 8, 0x63F},
    {"", "", "7.1(wide)", 8, 0xFF},
};

/// What Vorbis and Opus have. ffmpeg 5.1 mixes up the channels of 5.0 and 6.1 as it encodes Opus.
const std::vector<layout_case> vorbis_layouts{
    {"", "", "mono", 1, 0x4}, {"", "", "stereo", 2, 0x3}, {"", "", "3.0", 3, 0x7},   {"", "", "quad", 4, 0x33},
    {"", "", "5.0", 5, 0x37}, {"", "", "5.1", 6, 0x3F},   {"", "", "6.1", 7, 0x70F}, {"", "", "7.1", 8, 0x63F},
};
const std::vector<layout_case> opus_layouts{
    {"", "", "mono", 1, 0x4},  {"", "", "stereo", 2, 0x3}, {"", "", "3.0", 3, 0x7},
    {"", "", "quad", 4, 0x33}, {"", "", "5.1", 6, 0x3F},   {"", "", "7.1", 8, 0x63F},
};

/// Its layout tags know one surround pair, which is the back pair here.
const std::vector<layout_case> aiff_layouts{
    {"", "", "mono", 1, 0x4},  {"", "", "stereo", 2, 0x3},      {"", "", "2.1", 3, 0xB},
    {"", "", "3.0", 3, 0x7},   {"", "", "3.0(back)", 3, 0x103}, {"", "", "quad", 4, 0x33},
    {"", "", "4.0", 4, 0x107}, {"", "", "3.1", 4, 0xF},         {"", "", "5.0", 5, 0x37},
    {"", "", "4.1", 5, 0x10F}, {"", "", "5.1", 6, 0x3F},        {"", "", "5.1(side)", 6, 0x3F},
    {"", "", "6.0", 6, 0x707}, {"", "", "6.1", 7, 0x70F},       {"", "", "6.1(back)", 7, 0x13F},
    {"", "", "7.1", 8, 0x63F}, {"", "", "7.1(wide)", 8, 0xFF},
};

const std::vector<layout_case> caf_layouts{
    {"", "", "mono", 1, 0x4},  {"", "", "stereo", 2, 0x3}, {"", "", "2.1", 3, 0xB},   {"", "", "3.0", 3, 0x7},
    {"", "", "quad", 4, 0x33}, {"", "", "5.1", 6, 0x3F},   {"", "", "7.1", 8, 0x63F},
};

const std::vector<layout_case> mp3_layouts{{"", "", "mono", 1, 0x4}, {"", "", "stereo", 2, 0x3}};

INSTANTIATE_TEST_SUITE_P(Wav, ReadingAContainer, testing::ValuesIn(layouts_in("a.wav", "pcm_s16le", any_layout)));
INSTANTIATE_TEST_SUITE_P(Rf64, ReadingAContainer,
                         testing::ValuesIn(layouts_in("a.wav", "pcm_f32le -rf64 always", any_layout)));
INSTANTIATE_TEST_SUITE_P(WavCompressed, ReadingAContainer,
                         testing::ValuesIn(layouts_in("a.wav", "adpcm_ms", mp3_layouts)));
INSTANTIATE_TEST_SUITE_P(W64, ReadingAContainer, testing::ValuesIn(layouts_in("a.w64", "pcm_s24le", any_layout)));
INSTANTIATE_TEST_SUITE_P(Caf, ReadingAContainer, testing::ValuesIn(layouts_in("a.caf", "pcm_s24be", caf_layouts)));
INSTANTIATE_TEST_SUITE_P(Aiff, ReadingAContainer, testing::ValuesIn(layouts_in("a.aiff", "pcm_s16be", aiff_layouts)));
INSTANTIATE_TEST_SUITE_P(Flac, ReadingAContainer, testing::ValuesIn(layouts_in("a.flac", "flac", flac_layouts)));
INSTANTIATE_TEST_SUITE_P(Vorbis, ReadingAContainer,
                         testing::ValuesIn(layouts_in("a.ogg", "libvorbis", vorbis_layouts)));
INSTANTIATE_TEST_SUITE_P(Opus, ReadingAContainer, testing::ValuesIn(layouts_in("a.opus", "libopus", opus_layouts)));
INSTANTIATE_TEST_SUITE_P(Mp3, ReadingAContainer, testing::ValuesIn(layouts_in("a.mp3", "libmp3lame", mp3_layouts)));

/// Files whose speakers are named in ways that ffmpeg does not write: the bytes that name them are exchanged.
class NamedSpeakers : public testing::Test {
protected:
    audio_format read_with(const char* file, const std::string& original, const std::string& replacement) {
        std::string bytes = testing_support::read_bytes(folder / file);
        const std::size_t place = bytes.find(original);
        EXPECT_NE(place, std::string::npos) << file;
        testing_support::write_bytes(folder / file, bytes.replace(place, original.size(), replacement));
        auto [format, samples] = testing_support::read_audio(folder / file);
        heard = heard_tones(samples, format.channels);
        return format;
    }

    testing_support::temporary_folder folder;
    std::vector<std::size_t> heard;
};

TEST_F(NamedSpeakers, AnAiffTagOrdersTheChannels) {
    const struct {
        const char* layout; ///< of as many channels, with a tag of its own
        char tag;
        const char* meaning;
        char other_tag;
        std::uint32_t mask;
        std::vector<std::size_t> order; ///< of the channels in the file, by speaker bit
    } cases[]{
        {"3.0", '\x71', "C L R", '\x72', 0x7, {1, 2, 0}},
        {"4.0", '\x73', "C L R Cs", '\x74', 0x107, {1, 2, 0, 3}},
        {"5.0", '\x75', "L C R Ls Rs", '\x77', 0x37, {0, 2, 1, 3, 4}},
        {"5.1", '\x79', "L R Ls Rs C LFE", '\x7A', 0x3F, {0, 1, 4, 5, 2, 3}},
        {"5.1", '\x79', "L C R Ls Rs LFE", '\x7B', 0x3F, {0, 2, 1, 5, 3, 4}},
        {"5.1", '\x79', "C L R Ls Rs LFE", '\x7C', 0x3F, {1, 2, 0, 5, 3, 4}},
        {"4.0", '\x73', "ambisonic", '\x6B', 0x33, {0, 1, 2, 3}},
        {"4.0", '\x73', "a layout of fewer channels", '\x64', 0x33, {0, 1, 2, 3}},
    };
    for (const auto& [layout, tag, meaning, other_tag, mask, order] : cases) {
        ffmpeg_write_tones(folder / "a.aiff", layout, static_cast<std::uint32_t>(order.size()), "pcm_s16be");
        const std::string head = "CHAN\0\0\0\x0C\0"s;
        EXPECT_EQ(read_with("a.aiff", head + tag, head + other_tag).channel_mask, mask) << meaning;
        EXPECT_EQ(heard, order) << meaning;
    }
}

TEST_F(NamedSpeakers, ACafThatNamesNoSpeakersHasTheDefaultMask) {
    ffmpeg_write_tones(folder / "a.caf", "4.0", 4, "pcm_s16le");
    const std::string head = "chan\0\0\0\0\0\0\0\x0C\0"s;
    EXPECT_EQ(read_with("a.caf", head + '\x73', head + '\x6B').channel_mask, 0x33U) << "ambisonic";
    EXPECT_EQ(heard, in_order(4));
}

TEST_F(NamedSpeakers, AFlacTagNamesThemInAnyCase) {
    const struct {
        std::string tag;
        std::uint32_t mask;
    } cases[]{
        {"WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0x603", 0x603}, {"WaveFormatExtensible_Channel_Mask=0X603", 0x603},
        {"WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0x60F", 0x33},  {"WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0xyz3", 0x33},
        {"WAVEFORMATEXTENSIBLE_CHANNEL_MACK=0x603", 0x33},
    };
    for (const auto& [tag, mask] : cases) {
        ffmpeg_write_tones(folder / "a.flac", "quad(side)", 4, "flac");
        EXPECT_EQ(read_with("a.flac", cases[0].tag, tag).channel_mask, mask) << tag;
    }
}

} // namespace
} // namespace host
