#include "host/audio/channel_order.h"

#include "velmora/channel_mask.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace host {
namespace {

namespace speaker = velmora::speaker;

// 5.1 as Vorbis stores it.
const speaker_list vorbis_5_1{speaker::front_left, speaker::front_centre, speaker::front_right,
                              speaker::back_left,  speaker::back_right,   speaker::low_frequency};

TEST(ChannelOrder, SpeakersOfAMaskComeLowestBitFirst) {
    EXPECT_EQ(speakers_of(0x60B), (speaker_list{0x1, 0x2, 0x8, 0x200, 0x400}));
    EXPECT_EQ(speakers_of(0), speaker_list());
    EXPECT_EQ(speakers_of(0x80000001), (speaker_list{0x1, 0x80000000}));
}

TEST(ChannelOrder, AListThatNamesEachSpeakerOnceHasAMask) {
    const struct {
        speaker_list speakers;
        std::optional<std::uint32_t> mask;
    } cases[]{
        {vorbis_5_1, 0x3F},
        {{speaker::top_back_right}, 0x20000},
        {{}, 0},
        {{speaker::front_left, speaker::front_left}, std::nullopt}, // twice
        {{speaker::front_left, 0}, std::nullopt},                   // unknown
        {{speaker::front_left, 0x6}, std::nullopt},                 // two in one
        {{0x40000}, std::nullopt},                                  // a bit without a name
    };
    for (const auto& [speakers, mask] : cases) {
        EXPECT_EQ(mask_of(speakers), mask) << testing::PrintToString(speakers);
    }
}

TEST(ChannelOrder, BringsAContainersFramesIntoMaskOrder) {
    std::vector<double> frames{1, 3, 2, 5, 6, 4, -1, -3, -2, -5, -6, -4};
    reorder(frames, to_mask_order(vorbis_5_1));
    EXPECT_EQ(frames, (std::vector<double>{1, 2, 3, 4, 5, 6, -1, -2, -3, -4, -5, -6}));
}

TEST(ChannelOrder, BringsFramesInMaskOrderIntoAContainers) {
    std::vector<double> frames{1, 2, 3, 4, 5, 6, -1, -2, -3, -4, -5, -6};
    reorder(frames, from_mask_order(vorbis_5_1));
    EXPECT_EQ(frames, (std::vector<double>{1, 3, 2, 5, 6, 4, -1, -3, -2, -5, -6, -4}));
}

TEST(ChannelOrder, EveryOrderOfFiveSpeakersComesBack) {
    speaker_list speakers{0x1, 0x2, 0x4, 0x100, 0x200};
    do {
        std::vector<double> frame(speakers.size());
        for (std::size_t channel = 0; channel < frame.size(); ++channel) {
            frame[channel] = static_cast<double>(speakers[channel]);
        }
        reorder(frame, to_mask_order(speakers));
        EXPECT_EQ(frame, (std::vector<double>{0x1, 0x2, 0x4, 0x100, 0x200})) << testing::PrintToString(speakers);
        reorder(frame, from_mask_order(speakers));
        for (std::size_t channel = 0; channel < frame.size(); ++channel) {
            EXPECT_EQ(frame[channel], speakers[channel]) << testing::PrintToString(speakers);
        }
    } while (std::next_permutation(speakers.begin(), speakers.end()));
}

TEST(ChannelOrder, FramesThatAreInOrderStay) {
    EXPECT_TRUE(to_mask_order(speakers_of(0x63F)).empty());
    EXPECT_TRUE(from_mask_order(speakers_of(0x63F)).empty());
    std::vector<double> frames{3, 1, 2};
    reorder(frames, {});
    EXPECT_EQ(frames, (std::vector<double>{3, 1, 2}));
}

} // namespace
} // namespace host
