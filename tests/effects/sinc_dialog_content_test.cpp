#include "effects/resampler_sinc/sinc_dialog.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

TEST(SincDialogContent, ARateIsTheNumberAtItsStartWithinTheLimits) {
    struct row {
        std::string typed;
        std::uint32_t rate_hz;
    };
    const row table[] = {
        {"44100", 44100},
        {"1000", 1000},
        {"999", 1000},
        {"0", 1000},
        {"", 1000},
        {"fast", 1000},
        {"-48000", 1000},
        {"48k", 1000},
        {"48000 Hz", 48000},
        {" 96000", 96000},
        {"9999999", 9999999},
        {"20000000", 20000000},
        {"20000001", 20000000},
        {"99999999999999999999", 20000000},
        {"44100.9", 44100},
        {"44 100", 1000},
    };
    for (const row& line : table) {
        EXPECT_EQ(read_sinc_dialog({line.typed, 2, false, ""}).target_rate_hz, line.rate_hz) << line.typed;
    }
}

TEST(SincDialogContent, TheOtherControlsAreTakenAsTheyStand) {
    EXPECT_EQ(read_sinc_dialog({"8000", 4, true, "44100; x"}), (sinc_settings{8000, 4, true, "44100; x"}));
    EXPECT_EQ(read_sinc_dialog({"8000", 0, false, "44100"}), (sinc_settings{8000, 0, false, "44100"}));
    EXPECT_EQ(read_sinc_dialog({"8000", -1, false, ""}).quality, 0U); // nothing selected
    EXPECT_EQ(read_sinc_dialog({"8000", 5, false, ""}).quality, 0U);
}

TEST(SincDialogContent, ShowsWhatIsStored) {
    struct row {
        sinc_settings stored;
        std::string rate;
        int quality;
    };
    const row table[] = {
        {{44100, 2, false, ""}, "44100", 2},
        {{12345, 4, true, "8000"}, "12345", 4}, // none of the list
        {{4294967295, 5, true, ""}, "4294967295", 2},
        {{0, 4294967295, false, "x"}, "0", 2},
    };
    for (const row& line : table) {
        const sinc_dialog_content shown = show_in_sinc_dialog(line.stored);
        EXPECT_EQ(shown.rate, line.rate);
        EXPECT_EQ(shown.quality, line.quality) << line.rate;
        EXPECT_EQ(shown.excludes, line.stored.excludes) << line.rate;
        EXPECT_EQ(shown.exclusions, line.stored.exclusions) << line.rate;
    }
}

} // namespace
} // namespace kelvane
