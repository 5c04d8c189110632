// A host that fails in the middle of "Resampler (dBpoweramp/SSRC)".
#include "tests/module/run_effect.h"
#include "tests/module/ssrc_preset.h"
#include "tests/resampler_ssrc/conversions.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

/// Blocks whose output, for each of which a block is inserted, and two ends of streams.
void fill(strict_list& list, random_source& random) {
    list.append(noise(random, 30'000, 0.9), {44100, 1, 0x4});
    list.append(noise(random, 30'000, 0.9), {44100, 1, 0x4});
    list.append(noise(random, 30'000, 0.9), {96000, 1, 0x4});
}

std::size_t count_converted(strict_list& list) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        count += list.at(i).format().sample_rate_hz == 48000 ? 1U : 0U;
    }
    return count;
}

TEST(SsrcFailures, AnInsertionThatFailsDropsTheStreamAndNothingElse) {
    random_source random(1);
    constexpr std::size_t insertions = 5;
    const programme next = noise_in({{44100, 1, 0x4}}, 5000, 0.9, random);
    const programme expected = play_whole(*make_ssrc(48000), next);
    for (std::size_t done = 0; done <= insertions; ++done) {
        const auto effect = make_ssrc(48000);
        strict_list list;
        fill(list, random);
        list.refuse_after(done);
        const std::string said = thrown_text<std::bad_alloc>([&] { effect->run(&list, nullptr, end_of_playback); });
        EXPECT_EQ(said == "nothing thrown", done == insertions) << done << ", " << said;
        EXPECT_EQ(count_converted(list), done); // each is whole, and there is no other
        EXPECT_EQ(effect->get_latency(), 0.0) << done;
        EXPECT_TRUE(play_whole(*effect, {}).empty()) << done << ": something was kept";
        EXPECT_TRUE(are_equal(play_whole(*effect, next), expected)) << done;
    }
    EXPECT_TRUE(are_equal(play_whole(*make_ssrc(48000), next), expected));
}

/// A block that has samples, and more of them than 32 bits of bytes can count. They are not there.
class endless_block final : public velmora::sample_block {
public:
    endless_block(std::uint32_t rate_hz, std::uint32_t channels, std::size_t frames)
        : rate_hz_(rate_hz), channels_(channels), frames_(frames) {}

    const double* get_data_ro() override { return &sample_; }
    double* get_data() override { return &sample_; }
    std::size_t get_data_size() override { return frames_ * channels_; }
    void set_data_size(std::size_t) override { ADD_FAILURE(); }
    std::uint32_t get_sample_rate() override { return rate_hz_; }
    void set_sample_rate(std::uint32_t) override { ADD_FAILURE(); }
    std::uint32_t get_channels() override { return channels_; }
    std::uint32_t get_channel_mask() override { return 0; }
    void set_channels(std::uint32_t, std::uint32_t) override { ADD_FAILURE(); }
    std::size_t get_sample_count() override { return frames_; }
    void set_sample_count(std::size_t) override { ADD_FAILURE(); }

private:
    std::uint32_t rate_hz_;
    std::uint32_t channels_;
    std::size_t frames_;
    double sample_ = 0.0;
};

TEST(SsrcFailures, ABlockOfFourGibibytesIsAnOverflow) {
    struct row {
        std::uint32_t channels;
        std::size_t frames;
    };
    for (const auto& [channels, frames] : {row{1, std::size_t{1} << 29U}, row{2, std::size_t{1} << 28U},
                                           row{3, 178'956'971}, row{2, std::size_t{1} << 60U}}) {
        endless_block block(44100, channels, frames);
        const auto effect = make_ssrc(48000);
        EXPECT_EQ(thrown_text<std::exception>([&] { effect->on_block(&block, nullptr); }), "Overflow") << frames;
        endless_block passing(48000, channels, frames);
        EXPECT_TRUE(effect->on_block(&passing, nullptr)) << frames; // nobody reads it
        effect->flush();
    }
}

TEST(SsrcFailures, AnOverflowLeavesTheStreamAsItIs) {
    random_source random(2);
    const auto effect = make_ssrc(48000);
    const programme played = noise_in({{44100, 1, 0}}, 30'000, 0.9, random);
    programme out = play_whole(*effect, played, 0);
    endless_block block(44100, 1, std::size_t{1} << 29U);
    EXPECT_EQ(thrown_text<std::exception>([&] { effect->on_block(&block, nullptr); }), "Overflow");
    join(out, play_whole(*effect, {}));
    EXPECT_TRUE(are_equal(out, play_whole(*make_ssrc(48000), played)));
}

} // namespace
