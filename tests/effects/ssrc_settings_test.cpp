#include "effects/resampler_ssrc/ssrc_settings.h"

#include "effects/resampler_ssrc/ssrc_words.h"
#include "frame/exceptions.h"
#include "tests/support/hex_bytes.h"
#include "tests/support/signals.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

namespace kelvane {

void PrintTo(const ssrc_settings& settings, std::ostream* out) {
    *out << settings.target_rate_hz << " Hz" << (settings.excludes ? ", without " : ", not ") << settings.exclusions;
}

namespace {

using testing_support::hex_bytes;
using testing_support::pick;
using testing_support::thrown_text;

struct settings_row {
    std::string payload;
    ssrc_settings expected;
};

TEST(SsrcSettings, ReadsWhatIsWhole) {
    const std::vector<settings_row> table{
        {"44AC0000 00000000 00 00000000", {44100, false, ""}},
        {"80BB0000 00000000 01 05000000 3434313030", {48000, true, "44100"}},
        {"80BB0000 78563412 80 05000000 3434313030", {48000, true, "44100"}},  // no meaning; any flag but 0
        {"80BB0000 00000000 00 05000000 3434313030", {48000, false, "44100"}}, // kept while it is off
        {"80BB0000 00000000 01 02000000 3434313030", {48000, true, "44"}},     // what follows does not count
        {"80BB0000 00000000 01 05000000 3434003030", {48000, true, "44"}},     // a zero byte ends the text
        {"80BB0000 00000000 01 01000000 00", {48000, true, ""}},
        {"80BB0000 00000000 01 03000000 C3A920", {48000, true, "\xC3\xA9 "}},
        {"E8030000", {1000, false, ""}}, // the least rate, and the greatest
        {"002D3101", {20000000, false, ""}},
    };
    for (const settings_row& line : table) {
        EXPECT_EQ(ssrc_settings::read(hex_bytes(line.payload)), line.expected) << line.payload;
    }
}

TEST(SsrcSettings, BehindTheRateAPayloadMayEndAnywhere) {
    const auto whole = hex_bytes("80BB0000 00000000 01 05000000 3434313030");
    constexpr std::size_t rate_bytes = 4;
    constexpr std::size_t flag_end_bytes = 9;
    for (std::size_t count = rate_bytes; count < whole.size(); ++count) {
        const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
        EXPECT_EQ(ssrc_settings::read(cut), (ssrc_settings{48000, count >= flag_end_bytes, ""})) << count << " bytes";
    }
    const std::string huge_claim = "80BB0000 00000000 01 FFFFFFFF 34343130";
    EXPECT_EQ(ssrc_settings::read(hex_bytes(huge_claim)), (ssrc_settings{48000, true, ""}));
}

TEST(SsrcSettings, WithoutARateInItsRangeTheyAreRefused) {
    for (const std::string payload :
         {"", "44", "44AC", "44AC00", // cut
          "00000000", "E7030000", "012D3101", "FFFFFFFF", "E7030000 00000000 00 00000000"}) {
        EXPECT_EQ(thrown_text<velmora_io::exception_io_data>([&] { ssrc_settings::read(hex_bytes(payload)); }),
                  "Unsupported format or corrupted file")
            << payload;
    }
}

TEST(SsrcSettings, AreWrittenInTheirOrder) {
    EXPECT_EQ(ssrc_settings{}.write(), hex_bytes("44AC0000 00000000 00 00000000"));
    EXPECT_EQ((ssrc_settings{48000, true, "44100"}.write()), hex_bytes("80BB0000 00000000 01 05000000 3434313030"));
}

TEST(SsrcSettings, ComeBackAsTheyWere) {
    testing_support::random_source random(1);
    for (int round = 0; round < 100; ++round) {
        ssrc_settings written{static_cast<std::uint32_t>(pick(random, 1000, 20'000'000)), round % 2 == 0,
                              std::string(pick(random, 0, 1000), '?')};
        std::generate(written.exclusions.begin(), written.exclusions.end(),
                      [&] { return static_cast<char>(pick(random, 1, 255)); });
        EXPECT_EQ(ssrc_settings::read(written.write()), written);
    }
}

TEST(SsrcSettings, RandomBytesAreReadOrRefused) {
    testing_support::random_source random(2);
    int read = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<std::byte> payload(pick(random, 0, 40)); // its end is the allocation's
        std::generate(payload.begin(), payload.end(), [&] { return static_cast<std::byte>(pick(random, 0, 255)); });
        if (payload.size() >= 4 && round % 2 == 0) {
            payload[3] = std::byte{}; // below 2^24
        }
        try {
            const ssrc_settings settings = ssrc_settings::read(payload);
            EXPECT_TRUE(settings.target_rate_hz >= 1000 && settings.target_rate_hz <= 20'000'000);
            EXPECT_LE(settings.exclusions.size() + 13, std::max<std::size_t>(payload.size(), 13));
            ++read;
        } catch (const velmora_io::exception_io_data&) {
            EXPECT_TRUE(payload.size() < 4 || payload[3] != std::byte{} ||
                        (payload[2] == std::byte{} && payload[1] < std::byte{4}));
        }
    }
    EXPECT_GT(read, 1000);
}

TEST(SsrcSettings, AHostAsksForARateAlone) {
    for (const double quality : {0.0, 0.5, 1.0, std::nan("")}) {
        EXPECT_EQ(ssrc_settings::for_rate(96000, quality), (ssrc_settings{96000, false, ""})) << quality;
    }
}

TEST(SsrcWords, TellAndTakeTheFields) {
    struct row {
        std::string field;
        std::string value;
        ssrc_settings expected;
        std::vector<std::string> shown;
    };
    const std::vector<row> table{
        {"rate", "48000", {48000, true, "44100,8000"}, {"48000", "44100,8000"}},
        {"rate", "1000", {1000, true, "44100,8000"}, {"1000", "44100,8000"}},
        {"rate", "20000000", {20000000, true, "44100,8000"}, {"20000000", "44100,8000"}},
        {"exclude", "44100;48000", {96000, true, "44100;48000"}, {"96000", "44100;48000"}},
        {"exclude", "", {96000, false, ""}, {"96000", ""}},
    };
    const auto words = ssrc_words();
    const auto before = ssrc_settings{96000, true, "44100,8000"}.write();
    for (const row& line : table) {
        const auto changed = words->with(before, line.field, line.value);
        EXPECT_EQ(ssrc_settings::read(changed), line.expected) << line.field << '=' << line.value;
        EXPECT_EQ(words->values(changed), line.shown) << line.field << '=' << line.value;
    }
    EXPECT_EQ(words->values(ssrc_settings{44100, false, "44100"}.write()), // a text that is off
              (std::vector<std::string>{"44100", ""}));
    EXPECT_EQ(words->effect(), ssrc_settings::identity);
}

TEST(SsrcWords, TakeNoRateThatAPresetCannotHold) {
    const auto words = ssrc_words();
    for (const char* const typed : {"", "999", "20000001", "0", "-44100", "44.1k", "4294967296"}) {
        EXPECT_EQ(thrown_text<setting_error>([&] { words->with(words->defaults(), "rate", typed); }),
                  "rate takes 1000 to 20000000, not \"" + std::string(typed) + "\"");
    }
}

} // namespace
} // namespace kelvane
