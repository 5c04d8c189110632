// MP3 files that do not say how long they are, or wrongly.
#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "tests/host_audio/support/peer.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>

namespace host {
namespace {

using namespace std::string_literals;
using testing_support::ffmpeg_read;
using testing_support::output_of;
using testing_support::quoted;
using testing_support::read_audio;
using testing_support::read_bytes;
using testing_support::thrown_text;
using testing_support::write_bytes;

constexpr std::size_t samples_of_a_frame = 1152;
constexpr std::size_t decoder_delay = 529; // libsndfile leaves it off where a file declares its length

/// What ffmpeg writes for two seconds at 48 kHz and 128 kbit/s: a frame that declares, and 85 with the sound and the
/// encoder's delay.
constexpr std::size_t frame_bytes = 384;
constexpr std::size_t frames_of_two_s = 85;
constexpr std::size_t encoder_delay = 576;

double largest_difference(std::span<const double> a, std::span<const double> b) {
    double largest = 0.0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        largest = std::max(largest, std::abs(a[i] - b[i]));
    }
    return largest;
}

/// A tag of ID3v2 of so many bytes without its own 10.
std::string tag_in_front(std::size_t bytes) {
    const std::string size{'\0', '\0', static_cast<char>(bytes >> 7), static_cast<char>(bytes & 0x7F)};
    return "ID3\x04\0\0"s + size + std::string(bytes, 'x');
}

/// One of ID3v1.
const std::string old_tag = "TAG" + std::string(125, ' ');

class MpegLength : public testing::Test {
protected:
    /// By ffmpeg from one of its sources of sound, on the way through a pipe when it cannot come back to its start.
    std::string encoded(const std::string& source, const std::string& options, bool is_piped = false) const {
        const std::string command =
            "ffmpeg -v error -nostdin -y -f lavfi -i " + source + " " + options + " -id3v2_version 0 -f mp3 ";
        return is_piped ? output_of(command + "- | cat") : (output_of(command + quoted(file)), read_bytes(file));
    }

    std::string two_seconds(const std::string& options = "") const {
        return encoded("'aevalsrc=0.3*random(0):s=48000:d=2'", "-b:a 128k " + options);
    }

    std::vector<double> read(const std::string& bytes) const {
        write_bytes(file, bytes);
        return read_audio(file).samples;
    }

    testing_support::temporary_folder folder;
    std::filesystem::path file = folder / "a.mp3";
};

/// Loud noise takes a higher bit rate than the quiet tone behind it.
const std::string noise_then_tone = "\"aevalsrc='if(lt(t,0.5),random(0)*0.8,0.2*sin(2000*t))':s=44100:d=5\"";

TEST_F(MpegLength, IsThatOfAllFramesWhereNoneIsDeclared) {
    const std::string varying = encoded(noise_then_tone, "-q:a 2", true);
    const std::string constant = encoded("sine=r=44100:d=5", "-b:a 128k -write_xing 0");
    const std::string padded = constant.substr(417);
    ASSERT_EQ(padded.substr(0, 3), "\xFF\xFB\x92"s);
    const struct {
        const char* name;
        const std::string& bytes;
    } cases[]{{"varying bit rate", varying}, {"constant bit rate", constant}, {"a padded frame in front", padded}};
    constexpr std::size_t settled = 200'000; // in front, frames may refer to one that has been cut off
    for (const auto& [name, bytes] : cases) {
        const std::vector<double> samples = read(bytes);
        const std::vector<double> expected = ffmpeg_read(file);
        ASSERT_GE(expected.size(), 5U * 44100) << name;
        ASSERT_EQ(samples.size(), expected.size() - decoder_delay) << name;
        EXPECT_LE(largest_difference(std::span(samples).last(settled), std::span(expected).last(settled)), 1e-5)
            << name;
    }
}

TEST_F(MpegLength, IsThatOfAllFilesThatAreJoined) {
    const std::string one = two_seconds();
    const std::vector<double> alone = read(one);
    ASSERT_EQ(alone.size(), 96000U);
    for (const std::string& between : {""s, tag_in_front(3000), old_tag + tag_in_front(20), std::string(900, '\0')}) {
        const std::vector<double> both = read(one + between + one);
        const std::size_t frames = frames_of_two_s + 1 + frames_of_two_s; // the second's declaration is silence
        ASSERT_EQ(both.size(), frames * samples_of_a_frame - decoder_delay) << between.size();
        const std::size_t second = (frames_of_two_s + 1) * samples_of_a_frame + encoder_delay;
        EXPECT_LE(largest_difference(std::span(both).subspan(encoder_delay).first(90'000), alone), 1e-6);
        EXPECT_LE(largest_difference(std::span(both).subspan(second), alone), 1e-6);
    }
}

TEST_F(MpegLength, DoesNotCountWhatIsNoFrame) {
    const std::string frames = two_seconds("-write_xing 0");
    const std::size_t expected = frames_of_two_s * samples_of_a_frame - decoder_delay;
    const std::size_t middle = 40 * frame_bytes;
    const std::string like_a_frame = "xx\xFF\xFB\x94\xC4"s + std::string(500, 'x');
    for (const std::string& stray : {std::string(50, '\0'), std::string(900, 'x'), like_a_frame, tag_in_front(9000)}) {
        EXPECT_EQ(read(frames.substr(0, middle) + stray + frames.substr(middle)).size(), expected) << stray.size();
        EXPECT_EQ(read(frames + stray).size(), expected) << stray.size() << " behind";
    }
    EXPECT_EQ(read(frames + "APETAGEX" + std::string(300'000, 'x')).size(), expected);
    EXPECT_EQ(read(tag_in_front(200) + tag_in_front(20) + frames).size(), expected);
    EXPECT_EQ(read(frames.substr(0, frames.size() - 1)).size(), expected - samples_of_a_frame);
}

TEST_F(MpegLength, IsDeclaredInFramesOrInBytesOrInBoth) {
    const std::string whole = two_seconds();
    const std::size_t content = whole.find("Info");
    const auto declaring = [&](const std::string& declaration) {
        return whole.substr(0, content) + "Xing" + declaration +
               std::string(frame_bytes - content - 4 - declaration.size(), '\0') + whole.substr(frame_bytes);
    };
    const std::string bytes{'\0', '\0', static_cast<char>(whole.size() >> 8), static_cast<char>(whole.size() & 0xFF)};
    const struct {
        const char* name;
        std::string declaration;
    } cases[]{{"frames", "\0\0\0\1\0\0\0\x55"s},          {"too few frames", "\0\0\0\1\0\0\0\x54"s},
              {"too many frames", "\0\0\0\1\0\0\0\x60"s}, {"bytes", "\0\0\0\2"s + bytes},
              {"both", "\0\0\0\3\0\0\0\x55"s + bytes},    {"nothing", "\0\0\0\0"s}};
    for (const auto& [name, declaration] : cases) {
        EXPECT_EQ(read(declaring(declaration)).size(), frames_of_two_s * samples_of_a_frame - decoder_delay) << name;
    }
}

TEST_F(MpegLength, IsRefusedWhereTheFormatChanges) {
    const std::string one = two_seconds();
    for (const char* const options : {"-ar 44100", "-ac 2"}) {
        const std::string other = two_seconds(options);
        EXPECT_EQ(thrown_text<audio_error>([&] { read(one + old_tag + tag_in_front(20) + other); }),
                  file.string() + ": changes its sample rate or channels on the way; only its start could be read")
            << options;
    }
}

} // namespace
} // namespace host
