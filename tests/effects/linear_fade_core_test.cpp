#include "effects/crossfade/linear_fade_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {
namespace {

using testing_support::bits_of;
using testing_support::random_source;

/// A ring that holds samples, turned so that its oldest lie at `start` of the storage.
class held_samples {
public:
    held_samples(const std::vector<double>& samples, std::size_t start)
        : storage_(samples.size()), ring_(storage_), samples_(samples) {
        ring_.write(std::vector<double>(start));
        ring_.drop_oldest(start);
        const std::span<const double> all(samples_);
        const std::size_t to_end = ring_.writable();
        ring_.write(all.first(std::min(to_end, all.size())));
        ring_.write(all.subspan(std::min(to_end, all.size())));
    }

    sample_ring& ring() { return ring_; }

private:
    std::vector<double> storage_;
    sample_ring ring_;
    std::vector<double> samples_;
};

TEST(LinearFade, IsArmedByAChangeOfTrackAndBegunByItsFirstFrame) {
    linear_fade fade;
    EXPECT_TRUE(fade.is_idle());
    EXPECT_FALSE(fade.is_running());
    fade.arm();
    EXPECT_FALSE(fade.is_idle());
    EXPECT_FALSE(fade.is_running());
    held_samples held({1, 2}, 0);
    std::vector<double> incoming(1);
    EXPECT_EQ(fade.mix(held.ring(), incoming, 1), 1U);
    EXPECT_TRUE(fade.is_running());
    fade.end();
    EXPECT_TRUE(fade.is_idle());
    EXPECT_FALSE(fade.is_running());
}

TEST(LinearFade, TheWeightOfTheNewTrackRisesFromZeroByEqualSteps) {
    held_samples held({0, 0, 0, 0}, 0);
    std::vector<double> incoming(4, 1.0);
    linear_fade fade;
    fade.arm();
    EXPECT_EQ(fade.mix(held.ring(), incoming, 1), 4U);
    EXPECT_EQ(incoming, (std::vector<double>{0.0, 0.25, 0.5, 0.75}));
}

TEST(LinearFade, TheWeightOfTheOldTrackIsTheRest) {
    held_samples held({8, 16, 8, 16, 8, 16, 8, 16}, 0);
    std::vector<double> incoming{0, 0, 0, 0, 0, 0, 0, 0};
    linear_fade fade;
    fade.arm();
    fade.mix(held.ring(), incoming, 2);
    EXPECT_EQ(incoming, (std::vector<double>{8, 16, 6, 12, 4, 8, 2, 4}));
}

TEST(LinearFade, TakesWhatBothHave) {
    struct row {
        std::size_t held_samples;
        std::size_t incoming_samples;
        std::size_t mixed_samples;
    };
    for (const row& line : {row{8, 4, 4}, row{4, 8, 4}, row{6, 6, 6}, row{0, 6, 0}}) {
        held_samples held(std::vector<double>(line.held_samples, 1.0), 0);
        std::vector<double> incoming(line.incoming_samples, 5.0);
        linear_fade fade;
        fade.arm();
        EXPECT_EQ(fade.mix(held.ring(), incoming, 2), line.mixed_samples) << line.held_samples;
        EXPECT_EQ(held.ring().fill(), line.held_samples - line.mixed_samples) << line.held_samples;
        const auto rest =
            std::vector<double>(incoming.begin() + static_cast<std::ptrdiff_t>(line.mixed_samples), incoming.end());
        EXPECT_EQ(rest, std::vector<double>(rest.size(), 5.0)) << line.held_samples;
        EXPECT_EQ(fade.is_running(), line.mixed_samples > 0);
    }
}

TEST(LinearFade, ATrackChangeDoesNotBeginARunningFadeAgain) {
    held_samples held({0, 0, 0, 0}, 0);
    linear_fade fade;
    fade.arm();
    std::vector<double> first(2, 1.0);
    fade.mix(held.ring(), first, 1);
    fade.arm();
    std::vector<double> second(2, 1.0);
    fade.mix(held.ring(), second, 1);
    EXPECT_EQ(second, (std::vector<double>{0.5, 0.75}));
}

TEST(LinearFade, IsTheSameInAnyPiecesAndWhereverTheRingIsTurned) {
    random_source random(1);
    constexpr std::size_t channels = 3;
    constexpr std::size_t frames = 50;
    const std::vector<double> old_track = testing_support::noise(random, frames * channels, 1.0);
    const std::vector<double> new_track = testing_support::noise(random, frames * channels, 1.0);
    std::vector<double> expected(new_track.size());
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const double g = static_cast<double>(frame) / static_cast<double>(frames);
        for (std::size_t i = frame * channels; i < (frame + 1) * channels; ++i) {
            expected[i] = (new_track[i] - old_track[i]) * g + old_track[i];
        }
    }
    for (std::size_t turned_frames = 0; turned_frames <= frames; ++turned_frames) {
        held_samples held(old_track, turned_frames * channels);
        linear_fade fade;
        fade.arm();
        std::vector<double> mixed = new_track;
        std::span<double> left(mixed);
        for (const std::size_t piece_frames : testing_support::split(random, frames, 20)) {
            ASSERT_EQ(fade.mix(held.ring(), left.first(piece_frames * channels), channels), piece_frames * channels);
            left = left.subspan(piece_frames * channels);
        }
        EXPECT_EQ(bits_of(mixed), bits_of(expected)) << turned_frames;
    }
}

} // namespace
} // namespace kelvane
