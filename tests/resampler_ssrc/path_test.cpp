#include "effects/resampler_ssrc/down_path.h"
#include "effects/resampler_ssrc/up_path.h"
#include "tests/resampler_ssrc/conversions.h"

#include <gtest/gtest.h>

namespace kelvane::ssrc {
namespace {

using testing_support::rate_pair;
using testing_support::usual_quality;

template <class Path>
std::size_t frames_to_discard(const rate_pair& rates) {
    return Path(plan_rates(rates.input_hz, rates.output_hz).value(), usual_quality, 1, best_kernels())
        .frames_to_discard();
}

/// Half of the long filter and, going down, of the polyphase prototype, in frames of output and rounded down.
TEST(ConversionPaths, DiscardTheDelayOfTheirFilters) {
    struct row {
        rate_pair rates;
        std::size_t frames;
    };
    for (const row& expected : {row{{48000, 44100}, 2513},    // 16383 / 2 / (144000 / 44100) + 1659 / 2 / 160
                                row{{96000, 48000}, 4096},    // (16383 + 1) / 2 / 2
                                row{{44100, 48000}, 2730}}) { // 16383 / 2 / 3
        const bool goes_up = expected.rates.input_hz < expected.rates.output_hz;
        EXPECT_EQ(goes_up ? frames_to_discard<up_path>(expected.rates) : frames_to_discard<down_path>(expected.rates),
                  expected.frames)
            << expected.rates;
    }
}

} // namespace
} // namespace kelvane::ssrc
