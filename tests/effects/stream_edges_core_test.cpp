#include "effects/resampler_sinc/stream_edges_core.h"

#include "tests/support/literal_lpc.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

constexpr double untouched = std::numeric_limits<double>::quiet_NaN();

std::vector<double> channel_of(const std::vector<double>& frames, std::size_t channel, std::size_t channels) {
    std::vector<double> picked;
    for (std::size_t i = channel; i < frames.size(); i += channels) {
        picked.push_back(frames[i]);
    }
    return picked;
}

TEST(StreamEdges, EachChannelGoesOnByItself) {
    random_source random(1);
    for (const std::size_t channels : {1U, 2U, 6U}) {
        for (const std::size_t frames : {65U, 300U, 1024U}) {
            const auto last = noise(random, frames * channels, 0.9);
            std::vector<double> after(frames * channels, untouched);
            fill_after(last, channels, after);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                EXPECT_EQ(bits_of(channel_of(after, channel, channels)),
                          bits_of(literal_continuation(channel_of(last, channel, channels), frames)))
                    << channel << " of " << channels << ", " << frames << " frames";
            }
        }
    }
}

/// Fewer frames than are known, and more of them.
TEST(StreamEdges, AnyNumberOfFramesIsMade) {
    random_source random(1);
    for (const std::size_t known : {65U, 1024U}) {
        const auto last = noise(random, known, 0.9);
        for (const std::size_t frames : {1U, 77U, 1024U}) {
            std::vector<double> after(frames, untouched);
            fill_after(last, 1, after);
            EXPECT_EQ(bits_of(after), bits_of(literal_continuation(last, frames))) << frames << " behind " << known;
        }
    }
}

TEST(StreamEdges, TheWayInIsTheWayOutBackwards) {
    random_source random(1);
    for (const std::size_t channels : {1U, 2U, 6U}) {
        for (const std::size_t frames : {65U, 200U, 1024U}) {
            const auto first = noise(random, frames * channels, 0.9);
            std::vector<double> before(frames * channels, untouched);
            fill_before(first, channels, before);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                auto backwards = channel_of(first, channel, channels);
                std::reverse(backwards.begin(), backwards.end());
                auto expected = literal_continuation(backwards, frames);
                std::reverse(expected.begin(), expected.end());
                EXPECT_EQ(bits_of(channel_of(before, channel, channels)), bits_of(expected))
                    << channel << " of " << channels << ", " << frames << " frames";
            }
        }
    }
}

TEST(StreamEdges, BelowSixtyFiveFramesTheyAreSilence) {
    random_source random(1);
    for (const std::size_t frames : {1U, 2U, 64U}) {
        const auto known = noise(random, frames * 2, 0.9);
        std::vector<double> before(frames * 2, untouched);
        std::vector<double> after(50, untouched);
        fill_before(known, 2, before);
        fill_after(known, 2, after);
        EXPECT_EQ(before, std::vector<double>(frames * 2, 0.0)) << frames;
        EXPECT_EQ(after, std::vector<double>(50, 0.0)) << frames;
    }
}

TEST(StreamEdges, NothingGivesNothing) {
    std::vector<double> after(20, untouched);
    fill_after({}, 2, after);
    EXPECT_EQ(after, std::vector<double>(20, 0.0));
    fill_before({}, 2, {});
}

} // namespace
} // namespace kelvane
