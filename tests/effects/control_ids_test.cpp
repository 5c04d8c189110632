#include "resources/control_ids.h"

#include <gtest/gtest.h>

namespace {

TEST(ControlIds, AreTheNumbersThatAHostOrAScriptFindsTheControlsBy) {
    struct row {
        const char* control;
        int id;
        int expected;
    };
    const row table[] = {
        {"crossfader, fade", CROSSFADER_FADE, 1026},
        {"crossfader, number", CROSSFADER_NUMBER, 1027},
        {"silence, minimum", SILENCE_MINIMUM, 1028},
        {"silence, its number", SILENCE_MINIMUM_NUMBER, 1029},
        {"silence, initial period", SILENCE_KEEPS_INITIAL, 1030},
        {"silence, threshold", SILENCE_THRESHOLD, 1032},
        {"silence, its number", SILENCE_THRESHOLD_NUMBER, 1033},
        {"both resamplers, rate", RESAMPLER_RATE, 1004},
        {"sinc resampler, quality", SINC_QUALITY, 1034},
        {"sinc resampler, description", SINC_DESCRIPTION, 1035},
        {"both resamplers, exclude", RESAMPLER_EXCLUDE, 1036},
        {"both resamplers, exclusions", RESAMPLER_EXCLUSIONS, 1037},
        {"crossfeed, strength", CROSSFEED_STRENGTH, 1038},
        {"crossfeed, number", CROSSFEED_NUMBER, 1039},
        {"the dialog of the FFT resampler", DIALOG_SSRC, 104},
    };
    for (const row& line : table) {
        EXPECT_EQ(line.id, line.expected) << line.control;
    }
}

} // namespace
