#include "quillet/quillet.h"

#include "host/objects/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <string>
#include <vector>

namespace {

std::string print(const char* format, ...) {
    host::text out;
    out.set_text("old", 3);
    va_list arguments;
    va_start(arguments, format);
    uPrintfV(&out, format, arguments);
    va_end(arguments);
    return out.str();
}

TEST(Quillet, PrintsAsPrintfDoes) {
    EXPECT_EQ(print("%u Hz is %s", 44100U, "excluded"), "44100 Hz is excluded");
    EXPECT_EQ(print("%s", ""), "");
    EXPECT_EQ(print("%s", "d\xC3\xA9j\xC3\xA0"), "d\xC3\xA9j\xC3\xA0");
    std::string right_aligned(1000, ' ');
    right_aligned.back() = '7';
    EXPECT_EQ(print("%1000d", 7), right_aligned);
}

TEST(Quillet, ThePeakIsTheLargestMagnitude) {
    struct row {
        std::vector<double> samples;
        double peak;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const row table[] = {
        {{}, 0.0},
        {{-0.0}, 0.0},
        {{0.25, -0.5, 0.125}, 0.5},
        {{std::nan(""), -0.5, std::nan("")}, 0.5},
        {{std::nan("")}, 0.0},
        {{1.0, -infinity}, infinity},
    };
    for (const row& line : table) {
        EXPECT_EQ(audio_math::calculate_peak(line.samples.data(), line.samples.size()), line.peak);
    }
}

TEST(Quillet, ThePeakMayLieAnywhere) {
    for (std::size_t length = 1; length <= 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::vector<double> samples(length, 0.25);
            samples[place] = -0.5;
            samples[(place + 1) % length] = length == 1 ? -0.5 : std::nan("");
            EXPECT_EQ(audio_math::calculate_peak(samples.data(), length), 0.5) << place << " of " << length;
        }
    }
}

TEST(Quillet, TheEventIsOneAndStays) {
    EXPECT_EQ(GetInfiniteWaitEvent(), GetInfiniteWaitEvent());
#ifdef _WIN32
    EXPECT_NE(GetInfiniteWaitEvent(), nullptr);
#else
    EXPECT_EQ(GetInfiniteWaitEvent(), nullptr);
#endif
}

#ifdef _WIN32
const testing::ExitedWithCode by_abort(3); // with which the runtime library's abort ends the process
#else
const testing::KilledBySignal by_abort(SIGABRT);
#endif

TEST(QuilletDeathTest, ABugCheckAbortsTheProcessBehindItsLine) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            uPrintCrashInfo_OnEvent("the reason and more", 10);
            uBugCheck();
        },
        by_abort, "^the reason\r?\n");
}

} // namespace
