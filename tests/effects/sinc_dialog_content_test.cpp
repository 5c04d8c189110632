#include "effects/resampler_sinc/sinc_dialog.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

TEST(SincDialogContent, ARateIsKeptWithinTheLimits) {
    struct row {
        std::string typed;
        std::uint32_t rate_hz;
    };
    const row table[] = {
        {"44100", 44100},     {"1000", 1000},         {"999", 1000},          {"fast", 1000},
        {"9999999", 9999999}, {"20000000", 20000000}, {"20000001", 20000000}, {"4294967296", 20000000},
    };
    for (const row& line : table) {
        EXPECT_EQ(read_sinc_dialog({{-1, line.typed}, 2, false, ""}).target_rate_hz, line.rate_hz) << line.typed;
    }
}

TEST(SincDialogContent, TheOtherControlsAreTakenAsTheyStand) {
    EXPECT_EQ(read_sinc_dialog({{0, ""}, 4, true, "44100; x"}), (sinc_settings{8000, 4, true, "44100; x"}));
    EXPECT_EQ(read_sinc_dialog({{0, ""}, 0, false, "44100"}), (sinc_settings{8000, 0, false, "44100"}));
    EXPECT_EQ(read_sinc_dialog({{0, ""}, -1, false, ""}).quality, 0U); // nothing selected
    EXPECT_EQ(read_sinc_dialog({{0, ""}, 5, false, ""}).quality, 0U);
}

TEST(SincDialogContent, ShowsWhatIsStored) {
    struct row {
        sinc_settings stored;
        rate_entry rate;
        int quality;
    };
    const row table[] = {
        {{44100, 2, false, ""}, {6, ""}, 2},
        {{12345, 4, true, "8000"}, {-1, "12345"}, 4}, // none of the list
        {{4294967295, 5, true, ""}, {-1, "4294967295"}, 2},
        {{0, 4294967295, false, "x"}, {-1, "0"}, 2},
    };
    for (const row& line : table) {
        const sinc_dialog_content shown = show_in_sinc_dialog(line.stored);
        EXPECT_EQ(shown.rate.selected, line.rate.selected) << line.stored.target_rate_hz;
        EXPECT_EQ(shown.rate.typed, line.rate.typed);
        EXPECT_EQ(shown.quality, line.quality) << line.stored.target_rate_hz;
        EXPECT_EQ(shown.excludes, line.stored.excludes) << line.stored.target_rate_hz;
        EXPECT_EQ(shown.exclusions, line.stored.exclusions) << line.stored.target_rate_hz;
    }
}

} // namespace
} // namespace kelvane
