#include "host/audio/layout_text.h"
#include "host/chain/level_meter.h"
#include "host/module/guid_text.h"
#include "host/module/hex_text.h"
#include "host/objects/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace host {
namespace {

constexpr velmora::guid sample_guid{0x0D048731, 0x8AA8, 0x4704, {0x8A, 0xD6, 0x18, 0x9E, 0x24, 0xD4, 0x8C, 0x88}};

TEST(GuidText, IsTheRegistryForm) {
    EXPECT_EQ(to_text(sample_guid), "{0D048731-8AA8-4704-8AD6-189E24D48C88}");
}

TEST(GuidText, IsReadWithOrWithoutBracesAndCapitals) {
    for (const auto* const written : {"{0D048731-8AA8-4704-8AD6-189E24D48C88}", "0D048731-8AA8-4704-8AD6-189E24D48C88",
                                      "{0d048731-8aa8-4704-8ad6-189e24d48c88}"}) {
        EXPECT_EQ(parse_guid(written), sample_guid) << written;
    }
}

TEST(GuidText, AnythingElseIsNoGuid) {
    for (const auto* const written :
         {"", "{}", "{0D048731-8AA8-4704-8AD6-189E24D48C8}", "0D0487318AA847048AD6189E24D48C88",
          "{0D048731-8AA8-4704-8AD6-189E24D48C8G}", "0D04873-18AA8-4704-8AD6-189E24D48C88",
          "0D048731-8AA8-4704-8AD6-189E24D48C 8", "+D048731-8AA8-4704-8AD6-189E24D48C88",
          "  048731-8AA8-4704-8AD6-189E24D48C88", "        -    -    -    -          01"}) {
        EXPECT_FALSE(parse_guid(written)) << written;
    }
}

TEST(HexText, GoesBothWays) {
    const std::vector<std::byte> bytes{std::byte{0}, std::byte{0x7F}, std::byte{0xA5}};
    EXPECT_EQ(to_hex(bytes), "007FA5");
    EXPECT_EQ(parse_hex("007FA5"), bytes);
    EXPECT_EQ(parse_hex(" 00 7f\ta5 "), bytes);
    EXPECT_EQ(parse_hex(""), std::vector<std::byte>());
}

TEST(HexText, MalformedTextIsNothing) {
    for (const auto* const written : {"0", "007", "0 0", "0x00", "GG", "-1", "+1", "00,11"}) {
        EXPECT_FALSE(parse_hex(written)) << written;
    }
}

TEST(Text, TakesALengthOrATerminatedText) {
    text held;
    held.set_text("abcdef", 3);
    EXPECT_EQ(held.str(), "abc");
    held.append_text("de", velmora::text_is_terminated);
    EXPECT_STREQ(held.get_text(), "abcde");
    held.set_text(held.get_text() + 1, 2); // from itself
    EXPECT_EQ(held.str(), "bc");
}

TEST(LayoutText, NamesTheCommonLayouts) {
    EXPECT_EQ(layout_text(1, 0x4), "mono");
    EXPECT_EQ(layout_text(2, 0x3), "stereo");
    EXPECT_EQ(layout_text(6, 0x3F), "5.1");
    EXPECT_EQ(layout_text(6, 0x60F), "5.1 (side)");
    EXPECT_EQ(layout_text(8, 0x63F), "7.1");
    EXPECT_EQ(layout_text(1, 0x1), "1 channel (mask 0x1)");
    EXPECT_EQ(layout_text(3, 0x3), "3 channels (mask 0x3)");
    EXPECT_EQ(format_text({48000, 2, 0x3}), "48000 Hz, stereo");
}

TEST(LevelMeter, KnowsThePeakAndWhatIsOver) {
    level_meter meter;
    EXPECT_EQ(meter.peak_dbfs(), -std::numeric_limits<double>::infinity());
    meter.measure(std::vector<double>{0.5, -0.25, 0.0});
    EXPECT_NEAR(meter.peak_dbfs(), -6.0206, 1e-4);
    EXPECT_EQ(meter.over_full_scale(), 0U);
    meter.measure(std::vector<double>{-2.0, 1.0, -1.0, 1.0000001, std::nan("")});
    EXPECT_EQ(meter.peak(), 2.0);
    EXPECT_EQ(meter.over_full_scale(), 3U);
}

} // namespace
} // namespace host
