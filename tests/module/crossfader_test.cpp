#include "tests/module/run_effect.h"
#include "tests/module/slow_crossfader.h"
#include "tests/support/built_module.h"
#include "tests/support/thrown_text.h"
#include "tests/support/u32_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <new>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_track = velmora::run_flag::end_of_track;
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

constexpr block_format stereo_44100{44100, 2, 0x3};
constexpr block_format mono_1000{1000, 1, 0x4};

host::service_ptr<velmora::effect_instance> make_with_fade(std::uint32_t fade_ms) {
    return make_effect("Crossfader", u32_bytes({fade_ms}));
}

/// All samples of a frame are the same: `first`, and from frame to frame `step` more.
stretch ramp(const block_format& format, std::size_t frames, double first, double step = 1.0) {
    stretch made{format, {}};
    for (std::size_t frame = 0; frame < frames; ++frame) {
        made.samples.insert(made.samples.end(), format.channels, first + step * static_cast<double>(frame));
    }
    return made;
}

stretch constant(const block_format& format, std::size_t frames, double value) {
    return ramp(format, frames, value, 0.0);
}

/// What a list holds, block by block. None is empty.
programme blocks_of(strict_list& list) {
    programme out;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        out.push_back({list.at(i).format(), list.at(i).samples()});
        EXPECT_GT(out.back().frames(), 0U) << "block " << i;
    }
    return out;
}

/// What is in the list after one call with these blocks.
programme call(velmora::effect_instance& effect, const programme& blocks, std::uint32_t flags = 0) {
    strict_list list;
    for (const stretch& block : blocks) {
        list.append(block.samples, block.format);
    }
    effect.run(&list, nullptr, flags);
    return blocks_of(list);
}

/// Puts blocks behind those that are there, joined where the format stays.
void append(programme& joined, const programme& blocks) {
    for (const stretch& block : blocks) {
        if (joined.empty() || !(joined.back().format == block.format)) {
            joined.push_back({block.format, {}});
        }
        joined.back().samples.insert(joined.back().samples.end(), block.samples.begin(), block.samples.end());
    }
}

programme joined(const programme& blocks) {
    programme all;
    append(all, blocks);
    return all;
}

std::size_t held_frames(velmora::effect_instance& effect, const block_format& format) {
    return static_cast<std::size_t>(std::llround(effect.get_latency() * format.sample_rate_hz));
}

TEST(Crossfader, TheDefaultIsAFadeOfTwoSeconds) {
    const host::effect_entry& effect = built_effects().find("Crossfader");
    const std::vector<std::byte> expected{std::byte{0xD0}, std::byte{7}, std::byte{0}, std::byte{0}};
    EXPECT_EQ(effect.default_preset.payload(), expected);
    EXPECT_TRUE(effect.has_dialog);
    EXPECT_TRUE(make_effect("Crossfader")->needs_track_change_mark());
}

TEST(Crossfader, ThePayloadIsTheFadeInMillisecondsWithinTenAndAMinute) {
    struct row {
        std::vector<std::uint8_t> payload;
        double held_s;
    };
    const row table[] = {
        {{}, 2.0},
        {{0xF4, 1, 0}, 2.0}, // a byte is missing
        {{0xF4, 1, 0, 0}, 0.5},
        {{0xF4, 1, 0, 0, 99, 99}, 0.5},
        {{10, 0, 0, 0}, 0.01},
        {{5, 0, 0, 0}, 0.01},
        {{0, 0, 0, 0}, 0.01},
        {{199, 0, 0, 0}, 0.199}, // shorter than the dialog has it
        {{0x60, 0xEA, 0, 0}, 60.0},
        {{0x90, 0x5F, 1, 0}, 60.0}, // 90000
        {{0xFF, 0xFF, 0xFF, 0xFF}, 60.0},
    };
    for (const row& line : table) {
        const auto effect = make_effect("Crossfader", line.payload);
        call(*effect, {constant(mono_1000, 70'000, 0.5)});
        EXPECT_EQ(effect->get_latency(), line.held_s) << testing::PrintToString(line.payload);
    }
}

TEST(Crossfader, HoldsAsManyFramesAsTheFadeIsLongHalvesRoundedUp) {
    struct row {
        std::uint32_t rate_hz;
        std::uint32_t channels;
        std::uint32_t fade_ms;
        std::size_t frames;
    };
    const row table[] = {
        {44100, 2, 2000, 88'200}, {48000, 6, 2000, 96'000}, {44100, 1, 20'000, 882'000}, {1050, 2, 10, 11}, // 10.5
        {1049, 2, 10, 10},                                                                                  // 10.49
        {150, 3, 10, 2},                                                                                    // 1.5
        {50, 2, 10, 1},                                                                                     // 0.5
    };
    for (const row& line : table) {
        const block_format format{line.rate_hz, line.channels, 0};
        const auto effect = make_with_fade(line.fade_ms);
        EXPECT_EQ(frames_of(call(*effect, {constant(format, line.frames, 0.5)})), 0U) << line.rate_hz;
        EXPECT_EQ(held_frames(*effect, format), line.frames) << line.rate_hz;
        EXPECT_EQ(frames_of(call(*effect, {constant(format, 3, 0.5)})), 3U) << line.rate_hz;
        EXPECT_EQ(held_frames(*effect, format), line.frames) << line.rate_hz;
    }
}

TEST(Crossfader, LatencyIsWhatIsHeld) {
    const auto effect = make_with_fade(2000);
    EXPECT_EQ(effect->get_latency(), 0.0);
    call(*effect, {constant({48000, 2, 0x3}, 1000, 0.5)});
    EXPECT_EQ(effect->get_latency(), 1000.0 / 48000.0);
    call(*effect, {}, end_of_track);
    call(*effect, {constant({48000, 2, 0x3}, 400, 0.5)});
    EXPECT_EQ(effect->get_latency(), 600.0 / 48000.0);
    effect->flush();
    EXPECT_EQ(effect->get_latency(), 0.0);
}

TEST(Crossfader, TheFirstFramesComeOutAFadeLater) {
    const auto effect = make_effect("Crossfader");
    for (double first = 0.0; first < 88'200.0; first += 4410.0) {
        EXPECT_EQ(call(*effect, {ramp(stereo_44100, 4410, first)}).size(), 0U) << first;
    }
    for (double first = 0.0; first < 88'200.0; first += 4410.0) {
        const programme out = call(*effect, {ramp(stereo_44100, 4410, 88'200.0 + first)});
        EXPECT_TRUE(are_equal(out, {ramp(stereo_44100, 4410, first)})) << first;
    }
}

TEST(Crossfader, OnATrackChangeTheNewTrackComesInByALinearRampAtOnce) {
    const auto effect = make_effect("Crossfader");
    call(*effect, {constant(stereo_44100, 100'000, 0.0)});
    EXPECT_EQ(call(*effect, {}, end_of_track).size(), 0U);
    const programme out = call(*effect, {constant(stereo_44100, 4410, 1.0)});
    ASSERT_EQ(out.size(), 1U);
    ASSERT_EQ(out[0].frames(), 4410U);
    for (std::size_t frame = 0; frame < 4410; ++frame) {
        const double weight = static_cast<double>(frame) / 88'200.0;
        ASSERT_EQ(out[0].samples[2 * frame], weight) << frame;
        ASSERT_EQ(out[0].samples[2 * frame + 1], weight) << frame;
    }
    EXPECT_EQ(held_frames(*effect, stereo_44100), 88'200U - 4410U);
}

TEST(Crossfader, BehindTheFadeTheNewTrackIsHeldBackAgain) {
    const auto effect = make_with_fade(10);
    call(*effect, {constant(mono_1000, 10, 0.0)}, end_of_track);
    const programme out = call(*effect, {ramp(mono_1000, 25, 100.0)});
    // Ten mixed frames as one block; of the fifteen behind them the newest ten stay.
    ASSERT_EQ(out.size(), 2U);
    const programme expected_mix{{mono_1000, {0.0, 10.1, 20.4, 30.9, 41.6, 52.5, 63.6, 74.9, 86.4, 98.1}}};
    ASSERT_EQ(out[0].frames(), 10U);
    for (std::size_t frame = 0; frame < 10; ++frame) {
        EXPECT_NEAR(out[0].samples[frame], expected_mix[0].samples[frame], 1e-12) << frame;
    }
    EXPECT_TRUE(are_equal({out[1]}, {ramp(mono_1000, 5, 110.0)}));
    EXPECT_TRUE(are_equal(joined(call(*effect, {}, end_of_playback)), {ramp(mono_1000, 10, 115.0)}));
}

TEST(Crossfader, WhatBothTracksShareStaysAsItIs) {
    const auto effect = make_with_fade(30);
    programme out;
    for (const std::size_t frames : {100U, 50U, 200U}) {
        append(out, call(*effect, {constant({1000, 3, 0x7}, frames, 0.7)}, end_of_track));
    }
    append(out, call(*effect, {}, end_of_playback));
    EXPECT_TRUE(are_equal(out, {constant({1000, 3, 0x7}, 300, 0.7)})); // less overlaps of 30 and 20 frames
}

TEST(Crossfader, AnAlbumIsAsLongAsItsTracksWithoutTheirOverlaps) {
    struct row {
        std::vector<std::size_t> tracks_frames;
        std::size_t album_frames;
    };
    const row table[] = {
        // With a fade of 100 frames.
        {{1000}, 1000},
        {{1000, 1000}, 1900},
        {{1000, 1000, 1000}, 2800},
        {{30, 1000}, 1000},        // 30 held, 30 overlap
        {{1000, 130, 1000}, 2000}, // 100 overlap, and of the second track 30 are held
        {{1000, 100, 1000}, 2000}, // the second track lies in the overlap, and nothing is held behind it
        {{1000, 60, 1000}, 1960},  // the fade runs on from the second into the third: 60 and 40 overlap
        {{1000, 60, 20, 1000}, 1980},
        {{1000, 60}, 960}, // playback ends within the fade: 40 held frames are dropped
        {{1000, 100}, 1000},
        {{1000, 101}, 1001},
        {{0, 1000}, 1000},
        {{1000, 0}, 1000}, // the mark alone begins no fade
        {{1, 1, 1, 1}, 2},
    };
    for (const row& line : table) {
        for (const std::size_t block_frames : {1U, 7U, 100U, 2000U}) {
            const auto effect = make_with_fade(100);
            programme out;
            for (const std::size_t frames : line.tracks_frames) {
                for (std::size_t first = 0; first < frames; first += block_frames) {
                    const std::size_t taken = std::min(block_frames, frames - first);
                    append(out, call(*effect, {constant(mono_1000, taken, 0.5)}));
                }
                append(out, call(*effect, {}, end_of_track));
            }
            append(out, call(*effect, {}, end_of_track | end_of_playback));
            EXPECT_EQ(frames_of(out), line.album_frames) << testing::PrintToString(line.tracks_frames);
        }
    }
}

TEST(Crossfader, ATrackShorterThanTheFadeDoesNotBeginItAgain) {
    const auto effect = make_with_fade(100);
    call(*effect, {constant(mono_1000, 100, 0.0)}, end_of_track);
    programme out = call(*effect, {constant(mono_1000, 60, 1.0)}, end_of_track);
    append(out, call(*effect, {constant(mono_1000, 40, 1.0)}));
    ASSERT_EQ(frames_of(out), 100U);
    for (std::size_t frame = 0; frame < 100; ++frame) {
        EXPECT_EQ(out[0].samples[frame], static_cast<double>(frame) / 100.0) << frame;
    }
}

TEST(Crossfader, AnotherFormatLetsTheOldTrackOutAsItIs) {
    for (const block_format& other :
         {block_format{48000, 2, 0x3}, block_format{44100, 1, 0x4}, block_format{44100, 2, 0x30}}) {
        for (const std::size_t mixed_frames : {0U, 5U}) { // before the fade, and within it
            const auto effect = make_effect("Crossfader");
            programme out = call(*effect, {ramp(stereo_44100, 1000, 0.0)}, end_of_track);
            append(out, call(*effect, {constant(stereo_44100, mixed_frames, 7.0)}));
            ASSERT_EQ(frames_of(out), mixed_frames);
            const programme tail = joined(call(*effect, {ramp(other, 300, 50.0)}));
            const stretch expected = ramp(stereo_44100, 1000 - mixed_frames, static_cast<double>(mixed_frames));
            EXPECT_TRUE(are_equal(tail, {expected})) << other.channel_mask;
            EXPECT_EQ(held_frames(*effect, other), 300U);
            EXPECT_TRUE(are_equal(joined(call(*effect, {}, end_of_playback)), {ramp(other, 300, 50.0)}));
        }
    }
}

TEST(Crossfader, AtTheEndOfPlaybackTheHeldTailComesOut) {
    for (const std::uint32_t last_mark : {0U, end_of_track}) { // a mark alone begins no fade
        const auto effect = make_effect("Crossfader");
        programme out = call(*effect, {ramp(stereo_44100, 100'000, 0.0)});
        append(out, call(*effect, {}, last_mark));
        append(out, call(*effect, {}, end_of_track | end_of_playback));
        EXPECT_TRUE(are_equal(out, {ramp(stereo_44100, 100'000, 0.0)})) << last_mark;
        EXPECT_EQ(effect->get_latency(), 0.0);
    }
}

TEST(Crossfader, PlaybackThatEndsWithinAFadeDropsTheRestOfTheOldTrack) {
    const auto effect = make_effect("Crossfader");
    call(*effect, {constant(stereo_44100, 88'200, 0.0)}, end_of_track);
    EXPECT_EQ(frames_of(call(*effect, {constant(stereo_44100, 4410, 1.0)}, end_of_playback)), 4410U);
    EXPECT_EQ(effect->get_latency(), 0.0);
    // Nothing of the fade is left for the next playback.
    const programme next = call(*effect, {ramp(stereo_44100, 4410, 0.0)}, end_of_playback);
    EXPECT_TRUE(are_equal(joined(next), {ramp(stereo_44100, 4410, 0.0)}));
}

TEST(Crossfader, ATrackChangeBeforeAnyAudioChangesNothing) {
    const auto effect = make_with_fade(100);
    programme out = call(*effect, {}, end_of_track);
    append(out, call(*effect, {ramp(mono_1000, 250, 0.0)}, end_of_playback));
    EXPECT_TRUE(are_equal(out, {ramp(mono_1000, 250, 0.0)}));
}

TEST(Crossfader, AFlushForgetsTheHeldAudioAndTheFade) {
    const auto effect = make_with_fade(100);
    call(*effect, {constant(mono_1000, 100, 0.0)}, end_of_track);
    call(*effect, {constant(mono_1000, 10, 0.0)});
    effect->flush();
    programme out = joined(call(*effect, {ramp(mono_1000, 250, 0.0)}));
    append(out, call(*effect, {}, end_of_playback));
    EXPECT_TRUE(are_equal(out, {ramp(mono_1000, 250, 0.0)}));
}

TEST(Crossfader, WhereAFadeHasNoFrameBlocksPass) {
    const block_format slow{49, 2, 0x3}; // 0.49 frames
    const auto effect = make_with_fade(10);
    programme out = call(*effect, {ramp(slow, 7, 0.0)}, end_of_track);
    append(out, call(*effect, {ramp(slow, 5, 7.0)}, end_of_track));
    EXPECT_TRUE(are_equal(out, {ramp(slow, 12, 0.0)}));
    EXPECT_EQ(effect->get_latency(), 0.0);
    append(out, call(*effect, {ramp(mono_1000, 30, 0.0)})); // and from there on as ever
    append(out, call(*effect, {ramp(slow, 5, 12.0)}, end_of_playback));
    const programme expected{ramp(slow, 12, 0.0), ramp(mono_1000, 30, 0.0), ramp(slow, 5, 12.0)};
    EXPECT_TRUE(are_equal(out, expected));
}

TEST(Crossfader, AStrangeSampleCostsNoOtherThanItsPartnerInTheFade) {
    random_source random(1);
    const programme first = noise_in({stereo_44100}, 1000, 0.9, random);
    const programme second = noise_in({stereo_44100}, 1000, 0.9, random);
    const auto album = [&](const programme& first_track) {
        const auto effect = make_with_fade(10); // 441 frames
        programme out = play(*effect, first_track, {100, 1}, end_of_track, random);
        append(out, play(*effect, second, {100, 1}, end_of_playback, random));
        return out;
    };
    const programme clean = album(first);
    for (const double strange : {std::nan(""), std::numeric_limits<double>::infinity(), 1e308}) {
        programme spoilt = first;
        spoilt[0].samples[2 * 700] = strange; // 141 frames into the fade, which begins at 559
        programme out = album(spoilt);
        ASSERT_EQ(frames_of(out), 2000U - 441U);
        EXPECT_NE(bits_of({out[0].samples[2 * 700]}), bits_of({clean[0].samples[2 * 700]})) << strange;
        out[0].samples[2 * 700] = clean[0].samples[2 * 700];
        EXPECT_TRUE(are_equal(out, clean)) << strange;
    }
}

TEST(Crossfader, ABlockWithoutItsSamplesPassesAndLeavesTheFadeAlone) {
    const auto effect = make_with_fade(100);
    call(*effect, {constant(mono_1000, 100, 0.0)}, end_of_track);
    programme out = call(*effect, {constant(mono_1000, 60, 1.0)});
    strict_list list;
    list.append(std::vector<double>(10), mono_1000).claim_frames(1000);
    list.append(std::vector<double>(10), {48000, 2, 0x3}).drop_buffer();
    effect->run(&list, nullptr, 0);
    ASSERT_EQ(list.get_count(), 2U);
    EXPECT_EQ(list.at(0).get_sample_count(), 1000U);
    EXPECT_EQ(list.at(0).changes(), 0);
    EXPECT_EQ(list.at(1).changes(), 0);
    append(out, call(*effect, {constant(mono_1000, 40, 1.0)}));
    ASSERT_EQ(frames_of(out), 100U);
    for (std::size_t frame = 0; frame < 100; ++frame) {
        EXPECT_EQ(out[0].samples[frame], static_cast<double>(frame) / 100.0) << frame;
    }
}

TEST(Crossfader, AFadeThatNoMemoryCanHoldIsABadAllocation) {
    // 60 s of a thousand channels at the highest rate: two million gigabytes.
    const block_format impossible{std::numeric_limits<std::uint32_t>::max(), 1024, 0};
    const auto effect = make_with_fade(60'000);
    call(*effect, {ramp(mono_1000, 500, 0.0)});
    strict_list list;
    list.append(std::vector<double>(1024, 0.25), impossible);
    EXPECT_EQ(thrown_text<std::bad_alloc>([&] { effect->run(&list, nullptr, 0); }), "bad allocation");
    // What was held has come out, and the block is as it was.
    ASSERT_EQ(list.get_count(), 2U);
    EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(ramp(mono_1000, 500, 0.0).samples));
    EXPECT_EQ(bits_of(list.at(1).samples()), bits_of(std::vector<double>(1024, 0.25)));
    EXPECT_EQ(effect->get_latency(), 0.0);
    // It is no more possible the second time.
    strict_list again;
    again.append(std::vector<double>(1024, 0.25), impossible);
    EXPECT_EQ(thrown_text<std::bad_alloc>([&] { effect->run(&again, nullptr, 0); }), "bad allocation");
    EXPECT_EQ(again.get_count(), 1U);
    const programme next = call(*effect, {ramp(mono_1000, 500, 0.0)}, end_of_playback);
    EXPECT_TRUE(are_equal(joined(next), {ramp(mono_1000, 500, 0.0)}));
}

TEST(Crossfader, WhatAHostCouldNotTakeComesOutNextTime) {
    const auto effect = make_with_fade(100);
    call(*effect, {ramp(mono_1000, 100, 0.0)});
    strict_list blocks;
    blocks.append(ramp(mono_1000, 60, 100.0).samples, mono_1000);
    for (const std::uint32_t flags : {0U, end_of_playback}) { // with its block, and at the end
        blocks.refuse_after(0);
        EXPECT_THROW(effect->run(&blocks, nullptr, flags), std::bad_alloc) << flags;
        blocks.refuse_no_more();
        effect->run(&blocks, nullptr, flags);
        const std::size_t last = blocks.get_count() - 1;
        const double first = flags == 0 ? 0.0 : 60.0;
        EXPECT_EQ(blocks.at(0).samples()[0], first) << flags;
        EXPECT_EQ(blocks.at(last).samples().back(), flags == 0 ? 59.0 : 159.0) << flags;
        blocks = strict_list();
    }
}

/// Runs one block through a host that takes `taken` blocks and no more, which leaves the list as it was, and then
/// through the same host with memory again. Returns what is in the list then.
programme call_again(velmora::effect_instance& effect, const stretch& block, std::size_t taken) {
    strict_list list;
    list.append(block.samples, block.format);
    list.refuse_after(taken);
    const double latency_s = effect.get_latency();
    EXPECT_THROW(effect.run(&list, nullptr, 0), std::bad_alloc) << taken;
    EXPECT_TRUE(are_equal(blocks_of(list), {block})) << taken;
    EXPECT_EQ(effect.get_latency(), latency_s) << taken;
    list.refuse_no_more();
    effect.run(&list, nullptr, 0);
    return blocks_of(list);
}

TEST(Crossfader, ABlockThatIsLongerThanTheFadeComesOutWholeOrNotAtAll) {
    struct row {
        std::size_t before_frames; ///< of which at most 100 are held
        std::vector<std::size_t> blocks_frames;
    };
    const row table[] = {{0, {100, 100, 50}}, {60, {100, 100, 10}}, {100, {100, 100, 50}}, {160, {40, 100, 100, 10}}};
    for (const row& line : table) {
        const std::size_t long_frames = line.before_frames == 0 ? 350 : 250;
        for (std::size_t taken = 0; taken < line.blocks_frames.size(); ++taken) {
            const auto effect = make_with_fade(100);
            programme out = call(*effect, {ramp(mono_1000, line.before_frames, 0.0)});
            const stretch long_block = ramp(mono_1000, long_frames, static_cast<double>(line.before_frames));
            const programme blocks = call_again(*effect, long_block, taken);
            std::vector<std::size_t> blocks_frames;
            for (const stretch& block : blocks) {
                blocks_frames.push_back(block.frames());
            }
            EXPECT_EQ(blocks_frames, line.blocks_frames) << line.before_frames << ", " << taken;
            append(out, blocks);
            append(out, call(*effect, {}, end_of_playback));
            EXPECT_TRUE(are_equal(out, {ramp(mono_1000, line.before_frames + long_frames, 0.0)}))
                << line.before_frames << ", " << taken;
        }
    }
}

TEST(Crossfader, AnOldTailThatLiesInTwoPiecesComesOutWholeOrNotAtAll) {
    for (const std::size_t taken : {0U, 1U}) {
        const auto effect = make_with_fade(100);
        programme out = call(*effect, {ramp(mono_1000, 160, 0.0)});
        append(out, call_again(*effect, ramp({1000, 2, 0x3}, 50, 0.0), taken));
        EXPECT_TRUE(are_equal(out, {ramp(mono_1000, 160, 0.0)})) << taken;
        strict_list list;
        list.refuse_after(taken);
        if (taken == 0) { // what is held now is one piece
            EXPECT_THROW(effect->run(&list, nullptr, end_of_playback), std::bad_alloc);
        }
        EXPECT_EQ(list.get_count(), 0U);
        EXPECT_TRUE(are_equal(call(*effect, {}, end_of_playback), {ramp({1000, 2, 0x3}, 50, 0.0)})) << taken;
    }
}

TEST(Crossfader, AnotherFormatGivesTheFadeUpAlsoWhereTheHostCouldNotTakeTheTail) {
    const auto effect = make_with_fade(100);
    call(*effect, {ramp(mono_1000, 100, 0.0)}, end_of_track);
    ASSERT_EQ(frames_of(call(*effect, {constant(mono_1000, 60, 0.0)})), 60U);
    strict_list list;
    list.append(std::vector<double>(10), {1500, 1, 0x4});
    list.refuse_after(0);
    EXPECT_THROW(effect->run(&list, nullptr, 0), std::bad_alloc);
    // A fade that still ran would drop the old track's rest.
    EXPECT_TRUE(are_equal(call(*effect, {}, end_of_playback), {ramp(mono_1000, 40, 60.0)}));
}

TEST(Crossfader, AFadeWhoseEndTheHostCouldNotTakeLosesNothingAndRepeatsNothing) {
    for (const std::size_t taken : {0U, 1U}) { // without the mixed frames, and with them but not with those behind
        const auto effect = make_with_fade(100);
        call(*effect, {constant(mono_1000, 100, 0.0)}, end_of_track);
        strict_list list;
        list.append(constant(mono_1000, 300, 1.0).samples, mono_1000);
        list.refuse_after(taken);
        EXPECT_THROW(effect->run(&list, nullptr, 0), std::bad_alloc) << taken;
        ASSERT_EQ(list.get_count(), 1U) << taken;
        list.refuse_no_more();
        effect->run(&list, nullptr, 0);
        programme out;
        append(out, blocks_of(list));
        append(out, call(*effect, {}, end_of_playback));
        stretch expected = constant(mono_1000, 300, 1.0);
        for (std::size_t frame = 0; frame < 100; ++frame) {
            expected.samples[frame] = static_cast<double>(frame) / 100.0;
        }
        EXPECT_TRUE(are_equal(out, {expected})) << taken;
    }
}

TEST(Crossfader, ABlockWithoutRateOrChannelsHasNoLatency) {
    for (const block_format& format : {block_format{0, 2, 0x3}, block_format{44100, 0, 0}}) {
        const auto effect = make_effect("Crossfader");
        strict_block block(std::vector<double>{0.5, 0.5}, format);
        EXPECT_TRUE(effect->on_block(&block, nullptr)) << format.channels; // a host's loop lets none of them come here
        EXPECT_EQ(effect->get_latency(), 0.0) << format.channels;
    }
}

/// One random call after the other, to the module's effect and to the slow one.
class twins {
public:
    twins(std::uint32_t fade_ms, std::uint64_t seed)
        : random_(seed), effect_(make_with_fade(fade_ms)), slow_(std::clamp(fade_ms * 0.001, 0.01, 60.0)) {}

    void step() {
        if (pick(random_, 0, 40) == 0) {
            effect_->flush();
            slow_.flush();
        } else {
            run(random_blocks(), random_flags());
        }
        EXPECT_NEAR(effect_->get_latency(), slow_.latency_s(), 1e-12);
    }

    void run(const programme& blocks, std::uint32_t flags) {
        append(out, call(*effect_, blocks, flags));
        for (const stretch& block : blocks) {
            slow_.take(block);
            taken_frames += block.frames();
        }
        if ((flags & end_of_playback) != 0) {
            slow_.end_playback();
        } else if ((flags & end_of_track) != 0) {
            slow_.change_track();
        }
    }

    const slow_crossfader& slow() const { return slow_; }

    programme out;
    std::size_t taken_frames = 0;

private:
    /// Up to three blocks, as a rule in the format of those before.
    programme random_blocks() {
        programme blocks;
        for (std::size_t left = pick(random_, 0, 3); left > 0; --left) {
            if (pick(random_, 0, 20) == 0) {
                format_ = formats_[pick(random_, 0, std::size(formats_) - 1)];
            }
            blocks.push_back({format_, noise(random_, pick(random_, 1, 90) * format_.channels, 1.0)});
        }
        return blocks;
    }

    std::uint32_t random_flags() {
        const std::size_t what = pick(random_, 0, 60);
        return what < 12    ? end_of_track
               : what == 12 ? end_of_playback
               : what == 13 ? end_of_playback | end_of_track
                            : 0;
    }

    static constexpr block_format formats_[] = {{1000, 2, 0x3},  {1000, 2, 0x30}, {1000, 1, 0x4}, {1500, 2, 0x3},
                                                {1050, 6, 0x3F}, {49, 2, 0x3},    {7, 1, 0x4}};
    random_source random_;
    block_format format_ = formats_[0];
    host::service_ptr<velmora::effect_instance> effect_;
    slow_crossfader slow_;
};

TEST(Crossfader, DoesAsTheSlowOneInAnyOrderOfBlocksMarksAndFlushes) {
    std::size_t mixed_frames = 0;
    std::size_t dropped_frames = 0;
    std::size_t forgotten_frames = 0;
    for (const std::uint32_t fade_ms : {10U, 37U, 100U, 250U, 5U}) {
        for (std::uint64_t seed = 1; seed <= 20; ++seed) {
            twins both(fade_ms, seed);
            for (int step = 0; step < 200; ++step) {
                both.step();
            }
            both.run({}, end_of_playback);
            const slow_crossfader& slow = both.slow();
            ASSERT_TRUE(are_equal(both.out, slow.out())) << fade_ms << " ms, seed " << seed;
            EXPECT_EQ(frames_of(both.out) + slow.mixed_frames + slow.dropped_frames + slow.forgotten_frames,
                      both.taken_frames);
            mixed_frames += slow.mixed_frames;
            dropped_frames += slow.dropped_frames;
            forgotten_frames += slow.forgotten_frames;
        }
    }
    // The random calls came by every place.
    EXPECT_GT(mixed_frames, 10'000U);
    EXPECT_GT(dropped_frames, 1000U);
    EXPECT_GT(forgotten_frames, 1000U);
}

TEST(Crossfader, MixesTheSameBitsHoweverTheTracksAreCutUp) {
    random_source random(1);
    const programme first = noise_in({stereo_44100}, 3000, 0.9, random);
    const programme second = noise_in({stereo_44100}, 3000, 0.9, random);
    programme whole;
    for (const cutting& cut : {cutting{3000, 1}, cutting{1, 1}, cutting{7, 3}, cutting{450, 5}, cutting{3000, 9}}) {
        const auto effect = make_with_fade(10);
        programme out = play(*effect, first, cut, end_of_track, random);
        append(out, play(*effect, second, cut, end_of_playback, random));
        if (whole.empty()) {
            whole = out;
        }
        EXPECT_TRUE(are_equal(out, whole)) << cut.longest_block_frames;
    }
}

} // namespace
