#include "effects/resampler_sinc/sinc_settings.h"

#include "effects/resampler_sinc/sinc_words.h"
#include "tests/support/hex_bytes.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

namespace kelvane {

void PrintTo(const sinc_settings& settings, std::ostream* out) {
    *out << settings.target_rate_hz << " Hz, quality " << settings.quality
         << (settings.excludes ? ", without " : ", not ") << settings.exclusions;
}

namespace {

using testing_support::hex_bytes;
using testing_support::thrown_text;

TEST(SincSettings, ReadsBothFormsAndRepairsWhatIsCut) {
    struct row {
        std::string payload;
        sinc_settings expected;
    };
    const sinc_settings defaults{44100, 2, false, ""};
    const std::vector<row> table{
        {"44AC0000 02000000 00 00000000", defaults},
        {"80BB0000 04000000 01 05000000 3434313030", {48000, 4, true, "44100"}},
        {"80BB0000 04000000 07 00000000", {48000, 4, true, ""}},
        {"80BB0000 04000000 00 05000000 3434313030", {48000, 4, false, "44100"}}, // kept while it is off
        {"80BB0000 04000000 01 02000000 3434313030", {48000, 4, true, "44"}},     // what follows does not count
        {"00000000 FFFFFFFF 00 00000000", {0, 0xFFFFFFFF, false, ""}},            // whole: taken as it is
        {"E7030000 07000000 00 00000000", {999, 7, false, ""}},
        // The older form: high quality or not, then the rate.
        {"01000000 00770100", {96000, 4, false, ""}},
        {"00000000 00770100", {96000, 2, false, ""}},
        {"00000080 00000000", {0, 4, false, ""}},
        {"80BB0000 04000000", {4, 4, false, ""}}, // whatever wrote it
        // Cut short.
        {"", defaults},
        {"80BB00", defaults},
        {"80BB0000", {48000, 2, false, ""}},
        {"80BB0000 010000", {48000, 2, false, ""}},
        {"80BB0000 01000000 01", {48000, 1, false, ""}},
        {"80BB0000 09000000 01 050000", {48000, 9, false, ""}},
        {"80BB0000 01000000 01 05000000 34343130", {48000, 1, false, ""}},
        {"80BB0000 01000000 01 FFFFFFFF 34343130", {48000, 1, false, ""}},
        {"80BB0000 FFFFFFFF 01", {48000, 2, false, ""}},
        {"E7030000 01000000 01", {44100, 1, false, ""}}, // 999
        {"E8030000 01000000 01", {1000, 1, false, ""}},
        {"002D3101 01000000 01", {20000000, 1, false, ""}},
        {"012D3101 01000000 01", {44100, 1, false, ""}},
    };
    for (const row& line : table) {
        EXPECT_EQ(sinc_settings::read(hex_bytes(line.payload)), line.expected) << line.payload;
    }
}

TEST(SincSettings, WritesTheWholeForm) {
    EXPECT_EQ(sinc_settings{}.write(), hex_bytes("44AC0000 02000000 00 00000000"));
    EXPECT_EQ((sinc_settings{48000, 4, true, "44100"}.write()), hex_bytes("80BB0000 04000000 01 05000000 3434313030"));
    const sinc_settings odd{1, 99, false, "d\xC3\xA9j\xC3\xA0 vu"};
    EXPECT_EQ(sinc_settings::read(odd.write()), odd);
}

TEST(SincSettings, AFractionOfQualityIsALevel) {
    struct row {
        double fraction;
        std::uint32_t quality;
    };
    const row table[] = {{1.0, 4}, {0.8, 4},  {0.79, 3}, {0.6, 3},  {0.5, 2}, {0.4, 2},         {0.39, 1},
                         {0.2, 1}, {0.19, 0}, {0.0, 0},  {-1.0, 0}, {2.0, 4}, {std::nan(""), 0}};
    for (const row& line : table) {
        EXPECT_EQ(sinc_settings::for_rate(96000, line.fraction), (sinc_settings{96000, line.quality, false, ""}))
            << line.fraction;
    }
}

TEST(SincWords, TellAndTakeTheFields) {
    struct row {
        std::string field;
        std::string value;
        sinc_settings expected;
        std::vector<std::string> shown;
    };
    const std::vector<row> table{
        {"rate", "48000", {48000, 2, true, "44100,8000"}, {"48000", "Normal", "44100,8000"}},
        {"rate", "0", {0, 2, true, "44100,8000"}, {"0", "Normal", "44100,8000"}},
        {"quality", "Highest", {96000, 4, true, "44100,8000"}, {"96000", "Highest", "44100,8000"}},
        {"quality", "lOWEST", {96000, 0, true, "44100,8000"}, {"96000", "Lowest", "44100,8000"}},
        {"quality", "3", {96000, 3, true, "44100,8000"}, {"96000", "Higher", "44100,8000"}},
        {"exclude",
         "11025;88200-96000",
         {96000, 2, true, "11025;88200-96000"},
         {"96000", "Normal", "11025;88200-96000"}},
        {"exclude", "", {96000, 2, false, ""}, {"96000", "Normal", ""}},
    };
    const auto words = sinc_words();
    const auto before = sinc_settings{96000, 2, true, "44100,8000"}.write();
    for (const row& line : table) {
        const auto changed = words->with(before, line.field, line.value);
        EXPECT_EQ(sinc_settings::read(changed), line.expected) << line.field << '=' << line.value;
        EXPECT_EQ(words->values(changed), line.shown) << line.field << '=' << line.value;
    }
    EXPECT_EQ(
        words->values(sinc_settings{44100, 7, false, "44100"}.write()), // a level without a name, a text that is off
        (std::vector<std::string>{"44100", "7", ""}));
}

TEST(SincWords, SayWhatAFieldTakes) {
    const auto words = sinc_words();
    const auto said = [&](const char* field, const char* value) {
        return thrown_text<setting_error>([&] { words->with(words->defaults(), field, value); });
    };
    EXPECT_EQ(said("quality", "best"), "quality takes Lowest, Lower, Normal, Higher, Highest, or 0 to 4, not \"best\"");
    EXPECT_EQ(said("quality", "5"), "quality takes Lowest, Lower, Normal, Higher, Highest, or 0 to 4, not \"5\"");
    EXPECT_NE(said("rate", "44.1k"), "nothing thrown");
    EXPECT_NE(said("rate", "-1"), "nothing thrown");
    EXPECT_NE(said("rate", "4294967296"), "nothing thrown");
}

} // namespace
} // namespace kelvane
