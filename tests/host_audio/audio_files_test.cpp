#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/platform/path_text.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using testing_support::audio;
using testing_support::read_audio;
using testing_support::thrown_text;
using testing_support::write_audio;

constexpr audio_format stereo{44100, 2, 0x3};

class AudioFiles : public testing::Test {
protected:
    static std::string opening(const std::filesystem::path& file) {
        return thrown_text<audio_error>([&] { open_audio(file); });
    }
    static std::string creating(const std::filesystem::path& file, const audio_format& format) {
        return thrown_text<audio_error>([&] { create_audio(file, format); });
    }

    testing_support::temporary_folder folder;
};

TEST_F(AudioFiles, EveryEncodingOfAWavComesBackAsFineAsItIs) {
    const std::vector<double> samples = testing_support::noise(2000, 1.0);
    const struct {
        std::optional<sample_encoding> encoding;
        double largest_error;
    } cases[]{
        {sample_encoding::pcm16, 0.5 / 32768},
        {sample_encoding::pcm24, 0.5 / 8388608},
        {sample_encoding::pcm32, 0.5 / 2147483648.0},
        {sample_encoding::float32, 0.5 / 16777216},
        {sample_encoding::float64, 0.0},
        {std::nullopt, 0.5 / 8388608},
    };
    for (const auto& [encoding, largest_error] : cases) {
        write_audio(folder / "a.wav", {stereo, samples}, encoding);
        const audio back = read_audio(folder / "a.wav");
        ASSERT_EQ(back.format, stereo);
        ASSERT_EQ(back.samples.size(), samples.size());
        double seen = 0.0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            seen = std::max(seen, std::abs(back.samples[i] - std::min(samples[i], 1.0 - 2 * largest_error)));
        }
        EXPECT_LE(seen, largest_error);
        EXPECT_GE(seen, 0.9 * largest_error) << "finer than asked for";
    }
}

TEST_F(AudioFiles, NamesInAnyScript) {
    for (const char8_t* const name : {u8"Größe.wav", u8"音楽.wav", u8"𝄞 clef.wav", u8"with space & 'quotes'.WAV"}) {
        write_audio(folder / name, {stereo, {0.5, -0.5}}, sample_encoding::pcm16);
        EXPECT_EQ(read_audio(folder / name).samples, (std::vector<double>{0.5, -0.5})) << to_utf8(name);
    }
    EXPECT_EQ(opening(folder / u8"静か.wav"), to_utf8(folder / u8"静か.wav") + ": there is no such file");
}

TEST_F(AudioFiles, TheExtensionIsTakenInAnyCase) {
    write_audio(folder / "loud.WaV", {stereo, {0.5, -0.5}});
    EXPECT_EQ(testing_support::read_bytes(folder / "loud.WaV").substr(0, 4), "RIFF");
    write_audio(folder / "wide.RF64", {stereo, {0.5, -0.5}});
    EXPECT_EQ(testing_support::read_bytes(folder / "wide.RF64").substr(0, 4), "RF64");
    EXPECT_EQ(read_audio(folder / "wide.RF64").samples, (std::vector<double>{0.5, -0.5}));
}

TEST_F(AudioFiles, TellsWhyAFileCannotBeOpened) {
    testing_support::write_bytes(folder / "text.wav", "This is no audio, whatever it is called.");
    testing_support::write_bytes(folder / "text.au", "A name is no proof.");
    testing_support::write_bytes(folder / "empty.wav", "");
    EXPECT_EQ(opening(folder / "none.wav"), to_utf8(folder / "none.wav") + ": there is no such file");
    EXPECT_EQ(opening(folder.path()), to_utf8(folder.path()) + ": is a folder");
    for (const char* const name : {"text.wav", "text.au", "empty.wav"}) {
        EXPECT_EQ(opening(folder / name).find(to_utf8(folder / name) + ": is not audio "), 0U)
            << opening(folder / name);
    }
}

TEST_F(AudioFiles, TellsWhyAFileCannotBeMade) {
    for (const char* const name : {"sound", "sound.txt", "sound.wav.bak", ".wav"}) {
        EXPECT_EQ(creating(folder / name, stereo).find(to_utf8(folder / name) + ": is not a name of a file"), 0U)
            << name;
    }
    const struct {
        audio_format format;
        const char* name;
    } impossible[]{{{44100, 0, 0}, "no channels"},
                   {{0, 2, 0x3}, "no rate"},
                   {{44100, 2, 0x7}, "a speaker too many"},
                   {{44100, 3, 0x3}, "a channel too many"},
                   {{44100, 33, 0xFFFFFFFF}, "33 channels"}};
    for (const auto& [format, name] : impossible) {
        EXPECT_NE(creating(folder / "a.wav", format).find("do not fit together"), std::string::npos) << name;
    }
    EXPECT_EQ(folder.entries(), 0U);
}

TEST_F(AudioFiles, AWriterWithoutCommitLeavesNothing) {
    {
        const auto writer = create_audio(folder / "a.wav", stereo);
        writer->write(std::vector<double>(100'000));
        EXPECT_EQ(folder.entries(), 1U);
        EXPECT_FALSE(std::filesystem::exists(folder / "a.wav"));
    }
    EXPECT_EQ(folder.entries(), 0U);
}

TEST_F(AudioFiles, AFileCanTakeThePlaceOfTheOneItIsMadeFrom) {
    write_audio(folder / "a.wav", {stereo, {0.5, 0.25}});
    {
        const audio content = read_audio(folder / "a.wav");
        write_audio(folder / "a.wav", {stereo, {content.samples[1], content.samples[0]}});
    }
    EXPECT_EQ(read_audio(folder / "a.wav").samples, (std::vector<double>{0.25, 0.5}));
}

TEST_F(AudioFiles, AnErrorIsOneLineWhateverTheName) {
    EXPECT_STREQ(audio_error("two\nlines\t\x7F.wav", "is bad").what(), "two?lines??.wav: is bad");
}

} // namespace
} // namespace host
