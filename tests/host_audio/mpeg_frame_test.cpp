#include "host/audio/mpeg_frame.h"

#include <gtest/gtest.h>

#include <array>

namespace host {
namespace {

struct frame_case {
    std::uint32_t header;
    std::uint64_t size_bytes; ///< 0: no frame
    std::size_t content_bytes;
};

std::array<std::byte, mpeg_header_bytes> bytes_of(std::uint32_t header) {
    return {static_cast<std::byte>(header >> 24), static_cast<std::byte>(header >> 16),
            static_cast<std::byte>(header >> 8), static_cast<std::byte>(header)};
}

/// A frame has 1152 samples at 32 kHz and above and 576 below, so its size is that many times bits a second ÷ samples
/// a second ÷ 8, rounded down.
constexpr frame_case cases[]{
    {0xFFFB9064, 417, 36},                      // 128 kbit/s at 44100 Hz, joint stereo: 417.96
    {0xFFFB9264, 418, 36},                      // the same with a byte of padding
    {0xFFFB94C4, 384, 21},                      // at 48000 Hz, one channel
    {0xFFFBE800, 1440, 36},                     // 320 kbit/s at 32000 Hz
    {0xFFFA1000, 104, 36},                      // 32 kbit/s, with a checksum: 104.49
    {0xFFF39064, 261, 21},                      // 80 kbit/s at 22050 Hz: 261.22
    {0xFFF398C4, 360, 13},                      // at 16000 Hz, one channel
    {0xFFE39864, 720, 21},                      // at 8000 Hz
    {0xFFE31064, 52, 21},                       // 8 kbit/s at 11025 Hz: 52.24
    {0xFFFB0064, 0, 0},                         // of no told bit rate
    {0xFFFBF064, 0, 0},     {0xFFFB9C64, 0, 0}, // no rate
    {0xFFEB9064, 0, 0},                         // no version
    {0xFFFD9064, 0, 0},                         // layer II
    {0xFFF19064, 0, 0},                         // no layer: another codec's frames begin so
    {0xFEFB9064, 0, 0},     {0x7FFB9064, 0, 0}, {0, 0, 0},
};

TEST(MpegFrame, TellsItsSize) {
    for (const auto& [header, size_bytes, content_bytes] : cases) {
        const auto frame = parse_mpeg_header(bytes_of(header));
        EXPECT_EQ(frame.has_value(), size_bytes != 0) << std::hex << header;
        EXPECT_EQ(frame.value_or(mpeg_frame{}).size_bytes, size_bytes) << std::hex << header;
        EXPECT_EQ(frame.value_or(mpeg_frame{}).content_bytes, content_bytes) << std::hex << header;
    }
}

TEST(MpegFrame, TellsItsFormat) {
    const struct {
        std::uint32_t header;
        std::uint32_t sample_rate_hz;
        std::uint32_t channels;
    } formats[]{{0xFFFB9064, 44100, 2}, {0xFFFB94C4, 48000, 1}, {0xFFFBE800, 32000, 2},
                {0xFFF39084, 22050, 2}, {0xFFF398C4, 16000, 1}, {0xFFE39864, 8000, 2}};
    for (const auto& [header, sample_rate_hz, channels] : formats) {
        const auto frame = parse_mpeg_header(bytes_of(header));
        ASSERT_TRUE(frame) << std::hex << header;
        EXPECT_EQ(frame->sample_rate_hz, sample_rate_hz) << std::hex << header;
        EXPECT_EQ(frame->channels, channels) << std::hex << header;
    }
}

} // namespace
} // namespace host
