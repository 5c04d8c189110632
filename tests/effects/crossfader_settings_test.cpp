#include "effects/crossfade/crossfader_dialog.h"
#include "effects/crossfade/crossfader_settings.h"
#include "effects/crossfade/crossfader_words.h"
#include "effects/effect_settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kelvane {
namespace {

constexpr auto largest_ms = std::numeric_limits<std::uint32_t>::max();

TEST(CrossfaderSettings, AnyStoredValueIsReadBackAsItIs) {
    for (const std::uint32_t ms : {0U, 5U, 200U, 2000U, 90'000U, largest_ms}) {
        EXPECT_EQ(crossfader_settings::read(crossfader_settings{ms}.write()).fade_ms, ms);
    }
    const std::vector<std::byte> expected{std::byte{0x12}, std::byte{0x34}, std::byte{0x56}, std::byte{0x78}};
    EXPECT_EQ(crossfader_settings{0x78563412}.write(), expected);
}

TEST(CrossfaderSettings, TheFadeIsTenMillisecondsToAMinute) {
    struct row {
        std::uint32_t ms;
        double fade_s;
    };
    for (const row& line : {row{0, 0.01}, row{9, 0.01}, row{10, 0.01}, row{11, 11 * 0.001}, row{2000, 2.0},
                            row{59'999, 59'999 * 0.001}, row{60'000, 60.0}, row{90'000, 60.0}, row{largest_ms, 60.0}}) {
        EXPECT_EQ(crossfader_settings{line.ms}.fade_s(), line.fade_s) << line.ms;
    }
}

TEST(CrossfaderWords, TellAndChangeTheFade) {
    const auto* const words = find_settings_words(crossfader_settings::identity);
    ASSERT_NE(words, nullptr);
    EXPECT_EQ(words->values(words->defaults()), (std::vector<std::string>{"2000"}));
    const auto changed = words->with(words->defaults(), "ms", "4000");
    EXPECT_EQ(crossfader_settings::read(changed).fade_ms, 4000U);
    for (const auto* const refused : {"-1", "4294967296", "4 s", "4.5", ""}) {
        EXPECT_THROW(words->with(words->defaults(), "ms", refused), setting_error) << refused;
    }
}

TEST(CrossfaderWords, WarnOfAFadeThatIsMadeAnotherLength) {
    struct row {
        std::uint32_t ms;
        std::string warning;
    };
    for (const row& line : {row{9, "a fade of 9 ms is made as one of 10 ms"}, row{10, ""}, row{2000, ""},
                            row{60'000, ""}, row{60'001, "a fade of 60001 ms is made as one of 60000 ms"}}) {
        EXPECT_EQ(crossfader_words()->warning(crossfader_settings{line.ms}.write(), 44100), line.warning);
    }
}

TEST(CrossfaderDialog, TheTrackbarHasAPositionForEachMillisecondOfItsRange) {
    struct row {
        std::uint32_t ms;
        int position;
    };
    for (const row& line : {row{0, 200}, row{199, 200}, row{200, 200}, row{201, 201}, row{2000, 2000},
                            row{20'000, 20'000}, row{20'001, 20'000}, row{largest_ms, 20'000}}) {
        EXPECT_EQ(crossfader_position(line.ms), line.position) << line.ms;
        EXPECT_EQ(crossfader_settings_at(line.position).fade_ms, static_cast<std::uint32_t>(line.position));
    }
}

} // namespace
} // namespace kelvane
