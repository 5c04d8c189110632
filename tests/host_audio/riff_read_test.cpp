#include "host/audio/riff_audio.h"

#include "host/audio/audio_error.h"
#include "tests/host_audio/support/riff_bytes.h"
#include "tests/host_audio/support/temporary_folder.h"
#include "tests/host_audio/support/whole_files.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using namespace std::string_literals;
using testing_support::chunk;
using testing_support::extensible_chunk;
using testing_support::format_chunk;
using testing_support::little_endian;
using testing_support::riff;
using testing_support::thrown_text;

/// The 16-bit samples 1, 2 and 3 in steps of full scale.
const std::string three_samples = "\1\0\2\0\3\0"s;
const std::vector<double> three_values{1 / 32768.0, 2 / 32768.0, 3 / 32768.0};
const std::string mono_16 = format_chunk(1, 1, 16);

class RiffReading : public testing::Test {
protected:
    std::filesystem::path file(std::string_view bytes) const {
        testing_support::write_bytes(folder / "in.wav", bytes);
        return folder / "in.wav";
    }
    testing_support::audio read(std::string_view bytes) const {
        const auto reader = open_riff(file(bytes));
        return reader ? testing_support::audio{reader->format(), testing_support::read_to_end(*reader)}
                      : testing_support::audio{};
    }
    std::string error_of(std::string_view bytes) const {
        return thrown_text<audio_error>([&] { read(bytes); });
    }

    testing_support::temporary_folder folder;
};

TEST_F(RiffReading, DecodesEveryEncoding) {
    const struct {
        std::string format;
        std::string data;
        std::vector<double> samples;
    } cases[]{
        {format_chunk(1, 1, 8), "\x00\x01\x80\xFF"s, {-1.0, -127 / 128.0, 0.0, 127 / 128.0}},
        {format_chunk(1, 1, 16), "\x00\x80\xFF\xFF\xFF\x7F"s, {-1.0, -1 / 32768.0, 32767 / 32768.0}},
        {format_chunk(1, 1, 24),
         "\x00\x00\x80\x01\x00\x00\xFF\xFF\x7F\0"s.substr(0, 9),
         {-1.0, 1 / 8388608.0, 8388607 / 8388608.0}},
        {format_chunk(1, 1, 32), "\x00\x00\x00\x80\x01\x00\x00\x00"s, {-1.0, 1 / 2147483648.0}},
        {format_chunk(1, 1, 12), "\x00\x80\xF0\x7F"s, {-1.0, 2047 / 2048.0}}, // fills the highest bits of two bytes
        {format_chunk(3, 1, 32), "\x00\x00\x00\x3F\x00\x00\xC0\xBF"s, {0.5, -1.5}},
        {format_chunk(3, 1, 64), "\x00\x00\x00\x00\x00\x00\xD0\xBF"s, {-0.25}},
        {extensible_chunk(1, 16, 0x4), "\x00\x40"s, {0.5}},
    };
    for (const auto& [format, data, samples] : cases) {
        EXPECT_EQ(read(riff(format + chunk("data", data))).samples, samples) << testing::PrintToString(format + data);
    }
}

TEST_F(RiffReading, TakesTheFilesMaskOrElseTheDefault) {
    const struct {
        unsigned channels;
        std::uint32_t in_file;
        std::uint32_t taken;
    } cases[]{
        {1, 0x1, 0x1},     // a single front left
        {2, 0x30, 0x30},   // the rear pair
        {2, 0x0, 0x3},     // none
        {2, 0x7, 0x3},     // of another count
        {4, 0x603, 0x603}, // side pair
        {6, 0x60F, 0x60F}, // side pair
        {2, 0x40001, 0x3}, // a bit without a name
        {8, 0xFF, 0xFF},   // wide
        {32, 0x3FFFF, 0xFFFFFFFF},
    };
    for (const auto& [channels, in_file, taken] : cases) {
        const auto content = read(riff(extensible_chunk(channels, 16, in_file) + chunk("data", "")));
        EXPECT_EQ(content.format, (audio_format{48000, channels, taken})) << channels << " channels, mask " << in_file;
    }
    EXPECT_EQ(read(riff(format_chunk(1, 3, 16, 96000) + chunk("data", ""))).format, (audio_format{96000, 3, 0xB}));
}

TEST_F(RiffReading, FindsTheSamplesAmongOtherChunks) {
    const std::string data = chunk("data", three_samples);
    const std::string odd = chunk("LIST", "odd");
    const struct {
        const char* name;
        std::string bytes;
    } cases[]{
        {"plain", riff(mono_16 + data)},
        {"odd chunk before", riff(mono_16 + odd + data)},
        {"odd chunk before the format", riff(odd + odd + mono_16 + data)},
        {"empty chunk before", riff(mono_16 + chunk("JUNK", "") + data)},
        {"chunks behind", riff(mono_16 + data + odd + chunk("id3 ", "text"))},
        {"a second data chunk", riff(mono_16 + data + chunk("data", three_samples))},
        {"bytes of half a sample behind", riff(mono_16 + chunk("data", three_samples + "\x7F"))},
        {"bytes behind the last chunk", riff(mono_16 + data) + "TAG of another kind"},
        {"long format chunk", riff(chunk("fmt ", mono_16.substr(8) + std::string(50, 'x')) + data)},
    };
    for (const auto& [name, bytes] : cases) {
        EXPECT_EQ(read(bytes).samples, three_values) << name;
    }
}

TEST_F(RiffReading, AnOddNumberOfBytesNeedsNoPadByteAtTheEnd) {
    const std::string bytes = riff(format_chunk(1, 1, 8) + chunk("data", "\x80\xC0\x80"));
    EXPECT_EQ(read(bytes).samples, (std::vector<double>{0.0, 0.5, 0.0}));
    EXPECT_EQ(read(std::string_view(bytes).substr(0, bytes.size() - 1)).samples, (std::vector<double>{0.0, 0.5, 0.0}));
}

TEST_F(RiffReading, NoSamplesAreNoError) {
    const std::string empty = mono_16 + chunk("data", "");
    for (const std::string& whole : {riff(empty), riff(empty + chunk("LIST", "text"))}) {
        const auto reader = open_riff(file(whole));
        EXPECT_EQ(reader->declared_frames(), 0U) << whole.size();
        EXPECT_TRUE(testing_support::read_to_end(*reader).empty()) << whole.size();
    }
}

/// A file of the three samples whose header has these sizes.
std::string sized(std::uint32_t riff_size, std::uint32_t data_size) {
    return "RIFF" + little_endian(riff_size, 4) + "WAVE" + mono_16 + "data" + little_endian(data_size, 4) +
           three_samples;
}

TEST_F(RiffReading, AStreamOfUnknownLengthGoesToTheEndOfTheFile) {
    const struct {
        std::uint32_t riff_size;
        std::uint32_t data_size;
    } cases[]{
        {0xFFFFFFFF, 0xFFFFFFFF}, {0, 0}, {8, 0}, {36, 0}, {0xFFFFFFFF, 0}, {0x7FFFF024, 0x7FFFF000},
    };
    for (const auto& [riff_size, data_size] : cases) {
        EXPECT_EQ(read(sized(riff_size, data_size)).samples, three_values) << riff_size << ' ' << data_size;
    }
}

/// The same as an RF64, with the sizes in the wide chunk.
std::string rf64(std::uint64_t riff_size, std::uint64_t data_size, std::string_view behind = "") {
    const std::string sizes = little_endian(riff_size, 8) + little_endian(data_size, 8) + std::string(12, '\0');
    return "RF64" + little_endian(0xFFFFFFFF, 4) + "WAVE" + chunk("ds64", sizes) + mono_16 + "data" +
           little_endian(0xFFFFFFFF, 4) + three_samples + std::string(behind);
}

TEST_F(RiffReading, AnRf64HasItsSizesInTheWideChunk) {
    EXPECT_EQ(read(rf64(78, 6)).samples, three_values);
    EXPECT_EQ(read(rf64(90, 6, chunk("LIST", "text"))).samples, three_values);
    EXPECT_EQ(read(rf64(0, 0)).samples, three_values) << "stream";
    EXPECT_EQ(read(rf64(~std::uint64_t{0}, ~std::uint64_t{0})).samples, three_values) << "stream";
    EXPECT_NE(error_of(rf64(0x140000000, 0x120000000)).find("cut short: of 4831838208 bytes"), std::string::npos);
}

TEST_F(RiffReading, GivesTheSameSamplesInEveryPortion) {
    const std::vector<double> original = testing_support::noise(90'003, 0.99);
    testing_support::write_audio(folder / "noise.wav", {{44100, 3, 0x7}, original}, sample_encoding::float64);
    for (const std::size_t frames : {1U, 7U, 2730U, 2731U, 30'000U, 40'000U}) {
        const auto reader = open_riff(folder / "noise.wav");
        EXPECT_EQ(reader->declared_frames(), 30'001U);
        EXPECT_EQ(testing_support::read_to_end(*reader, frames), original) << frames;
    }
}

TEST_F(RiffReading, FillsRoomWithWholeFramesOnly) {
    const auto reader = open_riff(file(riff(format_chunk(1, 2, 8) + chunk("data", "\xC0\x40\x80\x80"))));
    std::vector<double> room(3, 7.0);
    EXPECT_EQ(reader->read(std::span(room).first(1)), 0U);
    EXPECT_EQ(reader->read(room), 1U);
    EXPECT_EQ(room, (std::vector<double>{0.5, -0.5, 7.0}));
    EXPECT_EQ(reader->read(room), 1U);
    EXPECT_EQ(reader->read(room), 0U);
}

TEST_F(RiffReading, AnyShorterFileIsAnErrorThatNamesIt) {
    for (const std::string& whole :
         {riff(chunk("LIST", "text") + mono_16 + chunk("data", three_samples)), rf64(78, 6)}) {
        for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
            const auto cut = file(std::string_view(whole).substr(0, bytes));
            const std::string error = thrown_text<audio_error>([&] { testing_support::read_audio(cut); });
            EXPECT_EQ(error.find(cut.string() + ": "), 0U) << bytes << " bytes: " << error;
            EXPECT_EQ(error.find('\n'), std::string::npos) << bytes;
        }
    }
}

TEST_F(RiffReading, SaysWhatIsMissing) {
    const std::string cut = riff(mono_16 + chunk("data", three_samples));
    EXPECT_EQ(error_of(std::string_view(cut).substr(0, cut.size() - 1)),
              (folder / "in.wav").string() + ": is cut short: of 6 bytes of audio only 5 are there");
    EXPECT_EQ(error_of(riff(mono_16)),
              (folder / "in.wav").string() + ": is damaged or cut short: it has no \"data\" chunk");
}

TEST_F(RiffReading, AHeaderWithoutSenseIsAnError) {
    const std::string data = chunk("data", three_samples);
    const struct {
        const char* name;
        std::string format;
        const char* reason;
    } cases[]{
        {"no channels", format_chunk(1, 0, 16), "makes no sense"},
        {"no rate", format_chunk(1, 1, 16, 0), "makes no sense"},
        {"no bytes", format_chunk(1, 1, 0), "makes no sense"},
        {"too short", chunk("fmt ", "0123456789"), "makes no sense"},
        {"33 channels", format_chunk(1, 33, 16), "33 channels; at most 32"},
        {"65535 channels", format_chunk(1, 65535, 8), "65535 channels; at most 32"},
    };
    for (const auto& [name, format, reason] : cases) {
        EXPECT_NE(error_of(riff(format + data)).find(reason), std::string::npos) << name;
    }
}

TEST_F(RiffReading, LeavesOtherFilesToOthers) {
    const std::string data = chunk("data", three_samples);
    const std::string ambisonic = "\x01\x00\x00\x00\x21\x07\xD3\x11\x86\x44\xC8\xC1\xCA\x00\x00\x00"s;
    const std::string extensible = extensible_chunk(1, 16, 0);
    const struct {
        const char* name;
        std::string bytes;
    } cases[]{
        {"empty", ""},
        {"text", "This is no audio."},
        {"film", "RIFF" + little_endian(4, 4) + "AVI "},
        {"big-endian", "RIFX" + little_endian(4, 4) + "WAVE"},
        {"compressed", riff(format_chunk(2, 1, 4) + data)},
        {"8-bit float", riff(format_chunk(3, 1, 8) + data)},
        {"40-bit PCM", riff(format_chunk(1, 1, 40) + data)},
        {"ambisonic", riff(extensible.substr(0, 32) + ambisonic + data)},
    };
    for (const auto& [name, bytes] : cases) {
        EXPECT_EQ(open_riff(file(bytes)), nullptr) << name;
    }
}

} // namespace
} // namespace host
