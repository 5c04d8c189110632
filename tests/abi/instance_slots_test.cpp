#include "tests/abi/hand_made_audio.h"
#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gmock/gmock.h>

namespace abi_test {
namespace {

constexpr std::uint32_t end_of_playback = 2;

/// An instance of "Convert mono to stereo", driven through raw slots.
class InstanceSlots : public testing::Test {
protected:
    void SetUp() override {
        hand_made_preset preset;
        preset.owner = guid("{F661D118-5627-40AD-AB31-CCCF71A4819D}");
        const bool made = call<bool>(factory_of("{F661D118-5627-40AD-AB31-CCCF71A4819D}"), factory_slot::instantiate,
                                     &instance_, &preset);
        ASSERT_TRUE(made);
    }

    void TearDown() override {
        if (instance_ != nullptr) {
            EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 0U);
        }
    }

    void run_abortable(hand_made_list& list, std::uint32_t flags) {
        call<void>(instance_, instance_slot::run_abortable, &list, track, flags, &signal_);
    }

    static constexpr void* track = nullptr;
    void* instance_ = nullptr;
    hand_made_signal signal_;
    hand_made_block block_{44'100, {0.25, -0.5, 1.0}};
    hand_made_list list_{{&block_}};
};

const std::vector<double> doubled{0.25, 0.25, -0.5, -0.5, 1.0, 1.0};

TEST_F(InstanceSlots, CountsItsReferences) {
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::add_ref), 2U);
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::add_ref), 3U);
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 2U);
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 1U);
}

TEST_F(InstanceSlots, AnswersToBothGenerationsOfItsInterface) {
    for (const auto asked : {class_id::effect_instance, class_id::abortable_effect_instance}) {
        const guid_bytes asked_class = guid(asked);
        void* out = nullptr;
        ASSERT_TRUE(call<bool>(instance_, service_slot::query, &out, &asked_class)) << asked;
        EXPECT_EQ(out, instance_) << asked;
        EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 1U) << asked;
    }
}

TEST_F(InstanceSlots, LeavesTheAnswerAloneWhenAskedForAnotherClass) {
    const guid_bytes asked_class = guid(class_id::effect_factory);
    void* out = nullptr;
    EXPECT_FALSE(call<bool>(instance_, service_slot::query, &out, &asked_class));
    EXPECT_EQ(out, nullptr);
}

TEST_F(InstanceSlots, HoldsNothingBack) {
    call<void>(instance_, instance_slot::flush);
    EXPECT_EQ(call<double>(instance_, instance_slot::get_latency), 0.0);
    EXPECT_FALSE(call<bool>(instance_, instance_slot::needs_track_change_mark));
}

TEST_F(InstanceSlots, RewritesTheBlockOfAList) {
    run_abortable(list_, end_of_playback);
    EXPECT_EQ(block_.samples, doubled);
    EXPECT_EQ(block_.frames, 3U);
    EXPECT_EQ(block_.channels, 2U);
    EXPECT_EQ(block_.channel_mask, 0x3U);
    EXPECT_EQ(block_.rate_hz, 44'100U);
}

TEST_F(InstanceSlots, RewritesABlockByTheseCallsInThisOrder) {
    run_abortable(list_, 0);
    ASSERT_GE(block_.log.size(), 6U);
    const auto rewriting = block_.log.end() - 6;
    EXPECT_THAT(call_log(rewriting, block_.log.end()),
                testing::ElementsAre("get_sample_rate", "set_data_size 6", "get_data", "set_sample_count 3",
                                     "set_channels 2 3", "set_sample_rate 44100"));
    EXPECT_THAT(call_log(block_.log.begin(), rewriting), testing::Each(testing::StartsWith("get_")));
}

TEST_F(InstanceSlots, VisitsTheBlocksInOrderAndTakesThoseWithoutAudioOut) {
    hand_made_block empty(44'100, {});
    hand_made_block last(48'000, {0.5});
    list_.blocks = {&block_, &empty, &last};
    run_abortable(list_, 0);
    EXPECT_THAT(list_.blocks, testing::ElementsAre(&block_, &last));
    EXPECT_THAT(list_.log, testing::Contains("remove_item 1"));
    EXPECT_THAT(last.samples, testing::ElementsAre(0.5, 0.5));
}

TEST_F(InstanceSlots, AsksABlockForChannelsRateAndFramesUpToTheFirstThatIsMissing) {
    struct row {
        std::uint32_t channels;
        std::uint32_t rate_hz;
        std::size_t frames;
        call_log asked;
    };
    for (const row& line : {row{0, 0, 0, {"get_channels"}}, row{1, 0, 0, {"get_channels", "get_sample_rate"}},
                            row{1, 44100, 0, {"get_channels", "get_sample_rate", "get_sample_count"}}}) {
        hand_made_block block(line.rate_hz, {});
        block.channels = line.channels;
        hand_made_list list({&block});
        run_abortable(list, 0);
        EXPECT_EQ(block.log, line.asked);
        EXPECT_THAT(list.blocks, testing::IsEmpty());
    }
}

TEST_F(InstanceSlots, RunsWithoutAnAbortSignalToo) {
    call<void>(instance_, instance_slot::run, &list_, track, end_of_playback);
    EXPECT_EQ(block_.samples, doubled);
}

TEST_F(InstanceSlots, TakesASingleBlock) {
    EXPECT_TRUE(call<bool>(instance_, instance_slot::on_block, &block_, &signal_));
    EXPECT_EQ(block_.samples, doubled);
}

TEST_F(InstanceSlots, TheEndsOfTrackAndPlaybackChangeNothing) {
    call<void>(instance_, instance_slot::on_track_end, &signal_);
    call<void>(instance_, instance_slot::on_playback_end, &signal_);
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::add_ref), 2U);
    EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 1U);
}

} // namespace
} // namespace abi_test
