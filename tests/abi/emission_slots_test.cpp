#include "tests/abi/hand_made_audio.h"
#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gmock/gmock.h>

namespace abi_test {
namespace {

constexpr auto advanced_limiter = "{11B13A25-C282-41F6-B1F0-CEB7ECBCEAA8}";

/// An instance of "Advanced Limiter", which holds a short stretch of stereo until the end of playback or a new format.
class EmissionSlots : public testing::Test {
protected:
    void SetUp() override {
        hand_made_preset preset;
        preset.owner = guid(advanced_limiter);
        ASSERT_TRUE(call<bool>(factory_of(advanced_limiter), factory_slot::instantiate, &instance_, &preset));
        stereo_.channels = 2;
        stereo_.channel_mask = 0x3;
        stereo_.frames = 3;
    }

    void TearDown() override {
        if (instance_ != nullptr) {
            EXPECT_EQ(call<std::uint32_t>(instance_, service_slot::release), 0U);
        }
    }

    void run(std::uint32_t flags) {
        call<void>(instance_, instance_slot::run_abortable, &list_, static_cast<void*>(nullptr), flags, &signal_);
    }

    void* instance_ = nullptr;
    hand_made_signal signal_;
    hand_made_block stereo_{44'100, {0.25, -0.5, 0.75, 0.0, 0.0, 0.0}};
    hand_made_list list_{{&stereo_}};
};

TEST_F(EmissionSlots, ABlockIsInsertedForItsSamplesAndFilledByTheseCallsInThisOrder) {
    run(2);
    EXPECT_THAT(list_.log, testing::ElementsAre("get_count", "get_item 0", "remove_item 0", "get_count",
                                                "insert_item 0 6")); // 3 frames of 2 channels
    ASSERT_EQ(list_.inserted.size(), 1U);
    const hand_made_block& emitted = list_.inserted[0];
    EXPECT_THAT(emitted.log, testing::ElementsAre("get_data_size", "set_data_size 6", "get_data", "set_channels 2 3",
                                                  "set_sample_rate 44100", "set_sample_count 3"));
    EXPECT_EQ(emitted.samples.size(), 6U);
    EXPECT_NEAR(emitted.samples[2], 0.75, 1e-6); // at rest the limiter takes 2e-7 away
}

TEST_F(EmissionSlots, ABlockThatHasTheRoomIsNotEnlarged) {
    list_.room_samples = 6;
    run(2);
    ASSERT_EQ(list_.inserted.size(), 1U);
    EXPECT_THAT(list_.inserted[0].log, testing::ElementsAre("get_data_size", "get_data", "set_channels 2 3",
                                                            "set_sample_rate 44100", "set_sample_count 3"));
}

TEST_F(EmissionSlots, ItStandsBeforeTheBlockThatIsBeingProcessedAndIsNotVisited) {
    hand_made_block mono(44'100, std::vector<double>(300, 0.5));
    list_.blocks = {&stereo_, &mono};
    run(0);
    EXPECT_THAT(list_.log, testing::ElementsAre("get_count", "get_item 0", "remove_item 0", "get_count", "get_item 0",
                                                "insert_item 0 6", "get_count"));
    EXPECT_THAT(list_.blocks, testing::ElementsAre(&list_.inserted.at(0), &mono));
}

} // namespace
} // namespace abi_test
