#include "host/audio/riff_audio.h"

#include "host/audio/audio_error.h"
#include "host/audio/riff_header.h"
#include "tests/host_audio/support/riff_bytes.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace host {
namespace {

using namespace std::string_literals;
using testing_support::chunk;
using testing_support::extensible_chunk;
using testing_support::format_chunk;
using testing_support::little_endian;
using testing_support::riff;
using testing_support::thrown_text;

class RiffWriting : public testing::Test {
protected:
    std::string written(const audio_format& format, sample_encoding encoding, const std::vector<double>& samples,
                        std::uint64_t limit_bytes = riff_limit_bytes) const {
        const auto writer = create_riff(folder / "out.wav", format, encoding, limit_bytes);
        writer->write(samples);
        writer->commit();
        return testing_support::read_bytes(folder / "out.wav");
    }

    testing_support::temporary_folder folder;
};

const std::string room_for_sizes = chunk("JUNK", std::string(28, '\0'));

TEST_F(RiffWriting, SixteenBitStereoHasTheShortHeader) {
    EXPECT_EQ(written({48000, 2, 0x3}, sample_encoding::pcm16, {0.5, -1.0, 1 / 32768.0, 0.0}),
              riff(room_for_sizes + format_chunk(1, 2, 16) + chunk("data", "\x00\x40\x00\x80\x01\x00\x00\x00"s)));
}

TEST_F(RiffWriting, OtherFormatsHaveTheExtensibleHeaderWithTheirMask) {
    EXPECT_EQ(written({48000, 1, 0x1}, sample_encoding::pcm16, {0.5}),
              riff(room_for_sizes + extensible_chunk(1, 16, 0x1) + chunk("data", "\x00\x40"s)));
    EXPECT_EQ(written({48000, 4, 0x603}, sample_encoding::pcm24, {0.5, -1.0, 0.0, -1 / 8388608.0}),
              riff(room_for_sizes + extensible_chunk(4, 24, 0x603) +
                   chunk("data", "\x00\x00\x40\x00\x00\x80\x00\x00\x00\xFF\xFF\xFF"s)));
    EXPECT_EQ(written({48000, 2, 0x3}, sample_encoding::pcm32, {0.5, -1 / 2147483648.0}),
              riff(room_for_sizes + extensible_chunk(2, 32, 0x3) + chunk("data", "\x00\x00\x00\x40\xFF\xFF\xFF\xFF"s)));
}

TEST_F(RiffWriting, FloatsKeepWhatIsAboveFullScale) {
    const std::string floats = written({48000, 1, 0x4}, sample_encoding::float32, {1.5, -0.5});
    EXPECT_EQ(floats.substr(floats.size() - 28),
              chunk("fact", little_endian(2, 4)) + chunk("data", "\x00\x00\xC0\x3F\x00\x00\x00\xBF"s));
    EXPECT_EQ(floats.substr(80, 2), little_endian(3, 2)) << "tag in the extension";
    const std::string doubles = written({48000, 1, 0x4}, sample_encoding::float64, {-1.5});
    EXPECT_EQ(doubles.substr(doubles.size() - 16), chunk("data", "\x00\x00\x00\x00\x00\x00\xF8\xBF"s));
}

TEST_F(RiffWriting, IntegersClip) {
    const std::vector<double> loud{1.0, 1.5, -1.5, 1e9, std::numeric_limits<double>::quiet_NaN()};
    const std::string bytes = written({48000, 1, 0x4}, sample_encoding::pcm16, loud);
    EXPECT_EQ(bytes.substr(bytes.size() - 10), "\xFF\x7F\xFF\x7F\x00\x80\xFF\x7F\x00\x00"s);
}

TEST_F(RiffWriting, AnOddNumberOfBytesIsPadded) {
    EXPECT_EQ(written({48000, 1, 0x4}, sample_encoding::pcm24, {0.5}),
              riff(room_for_sizes + extensible_chunk(1, 24, 0x4) + chunk("data", "\x00\x00\x40"s)));
}

TEST_F(RiffWriting, NothingWrittenIsAFileWithoutSamples) {
    EXPECT_EQ(written({48000, 2, 0x3}, sample_encoding::pcm16, {}),
              riff(room_for_sizes + format_chunk(1, 2, 16) + chunk("data", "")));
}

TEST_F(RiffWriting, PastTheLimitItIsAnRf64) {
    // 80 bytes of header, of which the size counts 72.
    const audio_format format{48000, 2, 0x3};
    const std::string largest = written(format, sample_encoding::pcm16, std::vector<double>(50, 0.5), 172);
    EXPECT_EQ(largest.substr(0, 8), "RIFF" + little_endian(172, 4));
    const std::string larger = written(format, sample_encoding::pcm16, std::vector<double>(52, 0.5), 172);
    std::string half;
    for (int i = 0; i < 52; ++i) {
        half += "\x00\x40"s;
    }
    EXPECT_EQ(larger, "RF64" + little_endian(0xFFFFFFFF, 4) + "WAVE" +
                          chunk("ds64", little_endian(176, 8) + little_endian(104, 8) + little_endian(26, 8) +
                                            little_endian(0, 4)) +
                          format_chunk(1, 2, 16) + "data" + little_endian(0xFFFFFFFF, 4) + half);
    EXPECT_EQ(testing_support::read_audio(folder / "out.wav").samples, std::vector<double>(52, 0.5));
}

TEST_F(RiffWriting, TheHeaderOfAFilePastFourGibibytesHasWideSizes) {
    // 2^30 - 25 frames of four bytes: the last for which 72 + 2^32 - 100 stays below what 32 bits can say.
    constexpr std::uint64_t most_bytes = 0xFFFFFFFE - 72 - 2;
    const auto kind_of = [](std::uint64_t bytes) {
        const auto header = make_riff_header({48000, 2, 0x3}, {false, 2}, bytes, riff_limit_bytes);
        return std::string(reinterpret_cast<const char*>(header.data()), 4);
    };
    EXPECT_EQ(kind_of(most_bytes), "RIFF");
    EXPECT_EQ(kind_of(most_bytes + 4), "RF64");
    const auto header = make_riff_header({48000, 2, 0x3}, {false, 2}, 0x140000000, riff_limit_bytes);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(header.data()), header.size()),
              "RF64" + little_endian(0xFFFFFFFF, 4) + "WAVE" +
                  chunk("ds64", little_endian(0x140000048, 8) + little_endian(0x140000000, 8) +
                                    little_endian(0x50000000, 8) + little_endian(0, 4)) +
                  format_chunk(1, 2, 16) + "data" + little_endian(0xFFFFFFFF, 4));
}

TEST_F(RiffWriting, GivesTheSameFileInEveryPortion) {
    const std::vector<double> samples = testing_support::noise(60'000, 1.2);
    const std::string whole = written({44100, 3, 0x7}, sample_encoding::pcm24, samples);
    for (const std::size_t frames : {1U, 7U, 2731U, 8192U}) {
        const auto writer =
            create_riff(folder / "parts.wav", {44100, 3, 0x7}, sample_encoding::pcm24, riff_limit_bytes);
        for (std::size_t done = 0; done < samples.size(); done += 3 * frames) {
            writer->write(std::span(samples).subspan(done, std::min(3 * frames, samples.size() - done)));
        }
        writer->commit();
        EXPECT_EQ(testing_support::read_bytes(folder / "parts.wav"), whole) << frames;
    }
}

TEST_F(RiffWriting, RefusesSpeakersThatItCannotRecord) {
    const auto refusal = [&](std::uint32_t channels, std::uint32_t mask) {
        return thrown_text<audio_error>([&] { written({48000, channels, mask}, sample_encoding::pcm16, {}); });
    };
    EXPECT_EQ(refusal(2, 0x80000001), (folder / "out.wav").string() +
                                          ": WAV cannot record 2 channels (mask 0x80000001); it would be read back as "
                                          "stereo");
    EXPECT_EQ(refusal(20, 0xFFFFF), "nothing thrown") << "the mask that 20 channels have anyway";
    EXPECT_EQ(testing_support::read_audio(folder / "out.wav").format.channel_mask, 0xFFFFFU);
}

} // namespace
} // namespace host
