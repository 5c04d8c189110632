// Files that end before their audio does.
#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "tests/host_audio/support/peer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using testing_support::output_of;
using testing_support::quoted;
using testing_support::read_audio;
using testing_support::read_bytes;
using testing_support::thrown_text;
using testing_support::write_bytes;

/// As players put it behind any file: the name of the music in 128 bytes.
const std::string tag = "TAG" + std::string(125, ' ');

class CutShort : public testing::TestWithParam<const char*> {
protected:
    /// So many seconds of stereo noise, by ffmpeg.
    std::filesystem::path noise_file(const char* name, const char* options = "") const {
        output_of("ffmpeg -v error -nostdin -y -f lavfi -i 'aevalsrc=0.3*random(0)|0.3*random(1):s=48000:d=2' " +
                  std::string(options) + " " + quoted(folder / name));
        return folder / name;
    }

    testing_support::temporary_folder folder;
};

TEST_P(CutShort, IsAnErrorThatNamesTheFile) {
    const std::filesystem::path file = noise_file(GetParam());
    ASSERT_NO_THROW(read_audio(file));
    const std::string whole = read_bytes(file);
    for (const double part : {0.0, 0.02, 0.1, 0.3, 0.5, 0.77, 0.95, 0.99}) {
        write_bytes(file, whole.substr(0, static_cast<std::size_t>(part * static_cast<double>(whole.size()))));
        const std::string error = thrown_text<audio_error>([&] { read_audio(file); });
        EXPECT_EQ(error.find(file.string() + ": "), 0U) << part << ": " << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << part;
    }
    write_bytes(file, whole.substr(0, whole.size() - 100));
    EXPECT_NE(thrown_text<audio_error>([&] { read_audio(file); }), "nothing thrown") << "the last 100 bytes";
}

INSTANTIATE_TEST_SUITE_P(Containers, CutShort,
                         testing::Values("a.wav", "a.w64", "a.aiff", "a.caf", "a.flac", "a.ogg", "a.opus", "a.au"),
                         [](const auto& suffix) { return std::string(suffix.param).substr(2); });

using CutShortElse = CutShort;

TEST_F(CutShortElse, ACompressedOrBigEndianWavToo) {
    const std::filesystem::path compressed = noise_file("a.wav", "-c:a adpcm_ms");
    write_bytes(compressed, read_bytes(compressed).substr(0, 30000));
    EXPECT_NE(thrown_text<audio_error>([&] { read_audio(compressed); }).find("is cut short: of "), std::string::npos);
    output_of("sox -V1 -n -r 48000 -b 16 -c 1 -B " + quoted(folder / "big.wav") + " synth 1 noise");
    const std::string whole = read_bytes(folder / "big.wav");
    ASSERT_EQ(whole.substr(0, 4), "RIFX");
    EXPECT_EQ(read_audio(folder / "big.wav").samples.size(), 48000U);
    write_bytes(folder / "big.wav", whole.substr(0, 30000));
    EXPECT_NE(thrown_text<audio_error>([&] { read_audio(folder / "big.wav"); }).find("is cut short: of "),
              std::string::npos);
}

TEST_F(CutShortElse, AFlacBetweenTwoFramesToo) {
    const std::filesystem::path file = noise_file("a.flac");
    const std::string whole = read_bytes(file);
    const std::string frame_start = "\xFF\xF8"; // of a block of fixed length
    int cuts = 0;
    for (std::size_t frame = whole.find(frame_start); frame != std::string::npos;
         frame = whole.find(frame_start, frame + 1)) {
        write_bytes(file, whole.substr(0, frame));
        EXPECT_NE(thrown_text<audio_error>([&] { read_audio(file); }), "nothing thrown") << frame;
        ++cuts;
    }
    EXPECT_GE(cuts, 20); // two seconds in blocks of 4608 frames or less
}

TEST_F(CutShortElse, AnOggBetweenTwoPagesToo) {
    for (const char* const name : {"a.ogg", "a.opus"}) {
        const std::filesystem::path file = noise_file(name);
        const std::string whole = read_bytes(file);
        for (std::size_t page = whole.find("OggS", 1); page != std::string::npos; page = whole.find("OggS", page + 1)) {
            write_bytes(file, whole.substr(0, page));
            EXPECT_EQ(thrown_text<audio_error>([&] { read_audio(file); }),
                      file.string() + ": is cut short: the end of the Ogg stream is not there")
                << page;
        }
    }
}

TEST_F(CutShortElse, AnOggWithATagBehindItIsWhole) {
    const std::filesystem::path file = noise_file("a.ogg");
    write_bytes(file, read_bytes(file) + tag);
    const auto reader = open_audio(file);
    EXPECT_EQ(testing_support::read_to_end(*reader).size(), 2U * 96000);
}

TEST_F(CutShortElse, AnOggBehindAnotherIsRefused) {
    const std::string one = read_bytes(noise_file("a.ogg"));
    const std::string other = read_bytes(noise_file("b.opus"));
    for (const std::string& second : {one, other}) { // of the same serial number, and of another
        write_bytes(folder / "a.ogg", one + second);
        EXPECT_EQ(thrown_text<audio_error>([&] { read_audio(folder / "a.ogg"); }),
                  (folder / "a.ogg").string() +
                      ": holds several Ogg streams one behind the other; only the first could be read");
    }
}

TEST_F(CutShortElse, AnOggBesideAnotherIsNot) {
    const std::filesystem::path file = noise_file("a.wav");
    output_of("ffmpeg -v error -nostdin -i " + quoted(file) + " -i " + quoted(file) + " -map 0 -map 1 -c:a libvorbis " +
              quoted(folder / "a.ogg"));
    EXPECT_EQ(read_audio(folder / "a.ogg").samples.size(), 2U * 96000);
}

TEST_F(CutShortElse, AFlacWithATagBehindItIsWhole) {
    const std::filesystem::path file = noise_file("a.flac");
    const std::string whole = read_bytes(file);
    write_bytes(file, whole + tag);
    for (const std::size_t frames : {1000U, 96000U, 200'000U}) {
        EXPECT_EQ(testing_support::read_to_end(*open_audio(file), frames).size(), 2U * 96000) << frames;
    }
    write_bytes(file, whole.substr(0, whole.size() / 2) + tag);
    EXPECT_NE(thrown_text<audio_error>([&] { read_audio(file); }), "nothing thrown");
}

TEST_F(CutShortElse, AnMp3WithoutADeclarationHasWhatItHas) {
    const std::filesystem::path file = noise_file("a.mp3", "-write_xing 0 -b:a 128k");
    const std::string whole = read_bytes(file);
    write_bytes(file, whole.substr(0, whole.size() / 2));
    const std::size_t frames = testing_support::read_to_end(*open_audio(file)).size() / 2;
    EXPECT_GT(frames, 40'000U);
    EXPECT_LT(frames, 50'000U);
}

TEST_F(CutShortElse, AnMp3ThatDeclaresMoreThanItHasIsAnError) {
    for (const char* const options : {"-b:a 128k", "-q:a 2", "-ac 1 -ar 22050 -b:a 64k", "-ac 1", "-ar 24000"}) {
        const std::filesystem::path file = noise_file("a.mp3", options);
        const std::string whole = read_bytes(file);
        for (const double part : {0.03, 0.1, 0.5, 0.95}) {
            write_bytes(file, whole.substr(0, static_cast<std::size_t>(part * static_cast<double>(whole.size()))));
            const std::string error = thrown_text<audio_error>([&] { read_audio(file); });
            EXPECT_EQ(error.find(file.string() + ": is cut short: "), 0U) << options << ' ' << part << ": " << error;
        }
        write_bytes(file, whole.substr(0, whole.size() - 1));
        EXPECT_NE(thrown_text<audio_error>([&] { read_audio(file); }).find("is cut short: of "), std::string::npos)
            << options;
    }
}

TEST_F(CutShortElse, AnMp3IsToldByItsFrames) {
    const std::filesystem::path file = noise_file("a.mp3", "-b:a 128k"); // 2 s and the encoder's delay: 85 frames
    const std::string whole = read_bytes(file);
    const std::size_t begin = whole.find("Info") - 36;
    const std::string cut = whole.substr(begin, std::size_t{11} * 384 + 383); // the declaration, 10 frames, and a part
    const std::string short_tag = "ID3\x04" + std::string(5, '\0') + '\x05' + "a tag";
    const std::string long_tag = "ID3\x04" + std::string(4, '\0') + "\x03\x02" + std::string(3 * 128 + 2, 'x');
    for (const std::string& front : {std::string(), short_tag, long_tag, long_tag + short_tag}) {
        write_bytes(file, front + whole.substr(begin));
        EXPECT_EQ(read_audio(file).samples.size(), 2U * 96000) << front.size();
        for (const std::string& end : {std::string(), tag}) {
            std::string content = front;
            content += end.empty() ? cut : cut.substr(0, std::size_t{11} * 384);
            write_bytes(file, content += end);
            EXPECT_EQ(thrown_text<audio_error>([&] { read_audio(file); }),
                      file.string() + ": is cut short: of 85 MPEG frames only 10 are there")
                << front.size() << ' ' << end.size();
        }
    }
}

TEST_F(CutShortElse, AnMp3WithTagsAroundItIsWhole) {
    const std::filesystem::path file = noise_file("a.mp3", "-metadata title=Noise -id3v2_version 4 -write_id3v1 1");
    EXPECT_EQ(read_audio(file).samples.size(), 2U * 96000);
    write_bytes(file, read_bytes(file) + tag);
    EXPECT_EQ(read_audio(file).samples.size(), 2U * 96000);
}

TEST_F(CutShortElse, AnMp3ThatOnceHadMoreTagsIsWhole) {
    const std::filesystem::path file = noise_file("a.mp3");
    std::string bytes = read_bytes(file);
    bytes[bytes.find("Info") + 13]++; // 65536 more in its count of bytes
    write_bytes(file, bytes);
    EXPECT_EQ(read_audio(file).samples.size(), 2U * 96000);
}

TEST_F(CutShortElse, AnMp3WithStrayBytesIsNotJudged) {
    const std::filesystem::path file = noise_file("a.mp3", "-b:a 128k");
    std::string bytes = read_bytes(file);
    const std::size_t declaration = bytes.find("Info");
    bytes[declaration + 13]++;
    const std::size_t middle = declaration - 36 + std::size_t{40} * 384;
    bytes.replace(middle, 384, 500, '\0'); // a frame of the 85 is lost
    write_bytes(file, bytes);
    EXPECT_GE(read_audio(file).samples.size(), 2U * 83 * 1152);
}

TEST_F(CutShortElse, AnMp3InAWavDeclaresMoreThanItHas) {
    const auto reader = open_audio(noise_file("a.wav", "-c:a libmp3lame"));
    const std::size_t frames = testing_support::read_to_end(*reader).size() / 2;
    EXPECT_GE(frames, 96'000U);
    EXPECT_GT(reader->declared_frames().value_or(0), frames);
}

TEST_F(CutShortElse, AStreamThatWasNeverToldItsLengthIsWhole) {
    const struct {
        const char* container;
        const char* file;
    } cases[]{{"flac", "a.flac"}, {"w64", "a.w64"}, {"aiff", "a.aiff"}, {"ogg", "a.ogg"}, {"wav", "a.wav"}};
    for (const auto& [container, file] : cases) {
        output_of("ffmpeg -v error -nostdin -f lavfi -i sine=440:r=48000:d=1 -f " + std::string(container) +
                  " - | cat > " + quoted(folder / file));
        EXPECT_EQ(read_audio(folder / file).samples.size(), 48000U) << file;
    }
}

TEST_F(CutShortElse, AFileThatShrinksWhileItIsReadIsAnError) {
    const std::filesystem::path file = noise_file("a.wav");
    const auto reader = open_audio(file);
    std::vector<double> block(2000);
    EXPECT_EQ(reader->read(block), 1000U);
    std::filesystem::resize_file(file, 100'000);
    EXPECT_EQ(thrown_text<audio_error>([&] { testing_support::read_to_end(*reader); }),
              file.string() + ": ends while it is being read");
}

TEST_F(CutShortElse, DamageInTheMiddleOfAFlacIsAnError) {
    const std::filesystem::path file = noise_file("a.flac");
    std::string bytes = read_bytes(file);
    for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + 200; ++i) {
        bytes[i] = '\x55';
    }
    write_bytes(file, bytes);
    const std::string error = thrown_text<audio_error>([&] { read_audio(file); });
    EXPECT_EQ(error.find(file.string() + ": is damaged or cut short"), 0U) << error;
}

} // namespace
} // namespace host
