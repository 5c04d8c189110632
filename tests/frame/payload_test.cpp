#include "frame/payload_reader.h"

#include "frame/exceptions.h"
#include "frame/payload_writer.h"
#include "frame/preset_payload.h"
#include "tests/support/allocations.h"
#include "tests/support/failing_preset.h"
#include "tests/support/recording_preset.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {
namespace {

using testing_support::thrown_text;
using truncation = velmora_io::exception_io_data_truncation;

constexpr auto truncated = "Unsupported format or corrupted file";

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> made;
    for (const int value : values) {
        made.push_back(static_cast<std::byte>(value));
    }
    return made;
}

TEST(PayloadReader, ReadsWhatIsThere) {
    const auto payload = bytes({1, 2, 3, 4, 5});
    payload_reader reader(payload);
    std::array<std::byte, 8> buffer{};
    EXPECT_EQ(reader.read(buffer.data(), 3, nullptr), 3U);
    EXPECT_EQ(buffer[2], std::byte{3});
    EXPECT_EQ(buffer[3], std::byte{0});
    EXPECT_EQ(reader.read(buffer.data(), 8, nullptr), 2U);
    EXPECT_EQ(buffer[1], std::byte{5});
    EXPECT_EQ(reader.read(buffer.data(), 8, nullptr), 0U); // the end is no failure
}

TEST(PayloadReader, AnExactReadThatComesShortMovesNothing) {
    const auto payload = bytes({1, 2, 3});
    payload_reader reader(payload);
    EXPECT_EQ(thrown_text<truncation>([&] { read_u32(reader); }), truncated);
    EXPECT_EQ(reader.left(), 3U);
    std::array<std::byte, 3> buffer{};
    reader.read_exact(buffer.data(), 3, nullptr);
    EXPECT_EQ(buffer, (std::array{std::byte{1}, std::byte{2}, std::byte{3}}));
    reader.read_exact(buffer.data(), 0, nullptr); // nothing is always there
}

TEST(PayloadReader, SkippingEndsAtTheEnd) {
    const auto payload = bytes({1, 2, 3, 4});
    payload_reader reader(payload);
    EXPECT_EQ(reader.skip(10, nullptr), 4U);
    EXPECT_EQ(reader.skip(10, nullptr), 0U);
    EXPECT_EQ(reader.left(), 0U);
}

TEST(PayloadReader, AnExactSkipAnswersThePositionOrMovesNothing) {
    const auto payload = bytes({1, 2, 3, 4});
    payload_reader reader(payload);
    EXPECT_EQ(thrown_text<truncation>([&] { reader.skip_exact(10, nullptr); }), truncated);
    EXPECT_EQ(thrown_text<truncation>([&] { reader.skip_exact(~std::uint64_t{0}, nullptr); }), truncated);
    EXPECT_EQ(reader.skip_exact(1, nullptr), 1U);
    EXPECT_EQ(reader.skip_exact(2, nullptr), 3U); // from the start, not the count
    EXPECT_EQ(reader.left(), 1U);
}

TEST(PayloadReader, NumbersAreLittleEndian) {
    const auto payload = bytes({0x78, 0x56, 0x34, 0x12, 0xFE, 0xFF, 0xFF, 0xFF, 0x80});
    payload_reader reader(payload);
    EXPECT_EQ(read_u32(reader), 0x12345678U);
    EXPECT_EQ(read_i32(reader), -2);
    EXPECT_EQ(read_u8(reader), 0x80);
    EXPECT_EQ(thrown_text<truncation>([&] { read_u8(reader); }), truncated);
}

TEST(PayloadReader, ATextStandsBehindItsLength) {
    const auto payload = bytes({2, 0, 0, 0, 'a', 0, 'b'});
    payload_reader reader(payload);
    EXPECT_EQ(read_text(reader), std::string("a\0", 2));
    EXPECT_EQ(reader.left(), 1U);
    const auto empty = bytes({0, 0, 0, 0});
    payload_reader at_end(empty);
    EXPECT_EQ(read_text(at_end), "");
}

TEST(PayloadReader, ATextThatIsNotThereIsNotAllocated) {
    for (const auto& payload : {bytes({3, 0, 0, 0, 'a', 'b'}), bytes({255, 255, 255, 255, 'a'}), bytes({0, 0, 0})}) {
        payload_reader reader(payload);
        testing_support::forget_largest_request();
        EXPECT_EQ(thrown_text<truncation>([&] { read_text(reader); }), truncated) << payload.size();
        EXPECT_LT(testing_support::largest_request_bytes(), 1000U) << payload.size();
    }
}

TEST(PayloadWriter, IsTheMirrorOfTheReader) {
    const auto expected = bytes({0x78, 0x56, 0x34, 0x12, 0xFE, 0xFF, 0xFF, 0xFF, 0x80, 7, 8});
    EXPECT_EQ(payload_writer().u32(0x12345678).i32(-2).u8(0x80).bytes(bytes({7, 8})).payload(), expected);
}

TEST(PayloadWriter, PutsATextBehindItsLength) {
    EXPECT_EQ(payload_writer().text("ab").text("").payload(), bytes({2, 0, 0, 0, 'a', 'b', 0, 0, 0, 0}));
}

TEST(PayloadWriter, ATextTooLongForItsLengthIsRefusedBeforeAByteIsRead) {
    const char one_byte = 'a';
    const std::string_view claimed(&one_byte, std::size_t{1} << 32U);
    EXPECT_EQ(thrown_text<mox::exception_overflow>([&] { payload_writer().text(claimed); }), "Overflow");
}

/// One number; a preset that holds less is malformed.
struct one_number {
    static constexpr velmora::guid identity{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    std::uint32_t number = 42;

    static one_number read(std::span<const std::byte> payload) {
        payload_reader reader(payload);
        return {read_u32(reader)};
    }
    std::vector<std::byte> write() const { return payload_writer().u32(number).payload(); }
};

TEST(PresetPayload, AForeignOrUnreadablePresetOpensWithTheDefaults) {
    preset stored;
    write_settings(stored, one_number{7});
    EXPECT_EQ(owner_of(stored), one_number::identity);
    EXPECT_EQ(settings_or_defaults<one_number>(stored).number, 7U);
    preset shortened(stored);
    shortened.set_data(stored.get_data(), 3);
    EXPECT_EQ(settings_or_defaults<one_number>(shortened).number, 42U);
    const velmora::guid another{};
    stored.set_owner(&another);
    EXPECT_EQ(settings_or_defaults<one_number>(stored).number, 42U);
}

TEST(PresetPayload, OtherFailuresOfReadingPassOn) {
    const testing_support::failing_preset stored(one_number::identity);
    EXPECT_EQ(thrown_text<std::runtime_error>([&] { settings_or_defaults<one_number>(stored); }), "no payload");
}

TEST(PresetPayload, TheOwnerIsWrittenFirst) {
    testing_support::recording_preset<preset> stored;
    write_settings(stored, one_number{7});
    EXPECT_EQ(stored.writes(), (std::vector<std::string>{"set_owner", "set_data"}));
    EXPECT_EQ(owner_of(stored), one_number::identity);
    EXPECT_EQ(settings_or_defaults<one_number>(stored).number, 7U);
}

} // namespace
} // namespace kelvane
