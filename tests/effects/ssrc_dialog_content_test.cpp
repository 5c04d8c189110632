#include "effects/resampler_ssrc/ssrc_dialog.h"

#include "frame/preset_payload.h"
#include "tests/support/failing_preset.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

TEST(SsrcDialogContent, OpensWithThePresetOrWhateverFailsWithTheDefaults) {
    preset stored;
    write_settings(stored, ssrc_settings{96000, true, "8000"});
    EXPECT_EQ(open_in_ssrc_dialog(stored), (ssrc_settings{96000, true, "8000"}));
    stored.set_data("abc", 3);
    EXPECT_EQ(open_in_ssrc_dialog(stored), ssrc_settings());
    EXPECT_EQ(open_in_ssrc_dialog(testing_support::failing_preset(ssrc_settings::identity)), ssrc_settings());
}

TEST(SsrcDialogContent, ARateIsKeptWithinTheLimits) {
    struct row {
        rate_entry entered;
        std::uint32_t rate_hz;
    };
    const row table[] = {
        {{-1, "500"}, 1000},       {{-1, "999"}, 1000},       {{-1, "1000"}, 1000},          {{-1, "192000"}, 192'000},
        {{-1, "384000"}, 384'000}, {{-1, "384001"}, 384'000}, {{-1, "400000"}, 384'000},     {{-1, "abc"}, 1000},
        {{-1, ""}, 1000},          {{7, "44100"}, 48000},     {{-1, "4294967297"}, 384'000}, // 1 in 32 bits
    };
    for (const row& line : table) {
        EXPECT_EQ(read_ssrc_dialog({line.entered, false, ""}).target_rate_hz, line.rate_hz) << line.entered.typed;
    }
}

TEST(SsrcDialogContent, TheExclusionsAreTakenAsTheyStandAlsoWhenTheyDoNotCount) {
    EXPECT_EQ(read_ssrc_dialog({{0, ""}, true, "44100; x"}), (ssrc_settings{8000, true, "44100; x"}));
    EXPECT_EQ(read_ssrc_dialog({{0, ""}, false, "d\xC3\xA9j\xC3\xA0"}),
              (ssrc_settings{8000, false, "d\xC3\xA9j\xC3\xA0"}));
}

TEST(SsrcDialogContent, ShowsWhatIsStoredAboveItsLimitsToo) {
    struct row {
        ssrc_settings stored;
        rate_entry rate;
    };
    const row table[] = {
        {{44100, false, ""}, {6, ""}},
        {{96000, true, "8000"}, {10, ""}},
        {{192'000, false, "8000"}, {-1, "192000"}},
        {{20'000'000, true, "x"}, {-1, "20000000"}},
    };
    for (const row& line : table) {
        const ssrc_dialog_content shown = show_in_ssrc_dialog(line.stored);
        EXPECT_EQ(shown.rate.selected, line.rate.selected) << line.stored.target_rate_hz;
        EXPECT_EQ(shown.rate.typed, line.rate.typed);
        EXPECT_EQ(shown.excludes, line.stored.excludes) << line.stored.target_rate_hz;
        EXPECT_EQ(shown.exclusions, line.stored.exclusions) << line.stored.target_rate_hz;
    }
}

} // namespace
} // namespace kelvane
