#include "tests/module/kept_console.h"
#include "tests/module/literal_resampler.h"
#include "tests/module/resampler_answers.h"
#include "tests/module/run_effect.h"
#include "tests/module/sinc_preset.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_playback = velmora::run_flag::end_of_playback;
constexpr auto end_of_track = velmora::run_flag::end_of_track;

/// Frames that belong to `frames` at another rate. Halves fall as these doubles fall.
std::size_t expected_frames(std::size_t frames, std::uint32_t input_hz, std::uint32_t target_hz) {
    return static_cast<std::size_t>(static_cast<double>(frames) / input_hz * target_hz + 0.5);
}

TEST(Sinc, TheTargetRatePassesBitForBitAtOnce) {
    random_source random(1);
    const auto effect = make_effect(sinc_name); // to 44100 Hz
    const programme played = noise_in({{44100, 2, 0x3}, {44100, 6, 0x3F}}, 3000, 1.5, random);
    EXPECT_TRUE(are_equal(play(*effect, played, {500, 3}, 0, random), played));
    EXPECT_EQ(effect->get_latency(), 0.0);
    EXPECT_TRUE(play_whole(*effect, {}).empty());
}

TEST(Sinc, FiveHundredFramesComeOutAtTheEnd) {
    random_source random(1);
    const auto effect = make_sinc(48000, 2);
    EXPECT_TRUE(play(*effect, mono_noise(44100, 500, random), {100, 2}, end_of_track, random).empty());
    EXPECT_EQ(effect->get_latency(), 500.0 / 44100);
    const programme out = play_whole(*effect, {});
    ASSERT_EQ(out.size(), 1U);
    EXPECT_EQ(out[0].format, (block_format{48000, 1, 0x4}));
    EXPECT_EQ(out[0].frames(), 544U);
    EXPECT_EQ(effect->get_latency(), 0.0);
}

TEST(Sinc, AnEightBytePresetIsOfTheOlderForm) {
    random_source random(1);
    const programme played = mono_noise(44100, 3000, random);
    const programme highest = play_whole(*make_sinc(96000, 4), played);
    const programme normal = play_whole(*make_sinc(96000, 2), played);
    EXPECT_TRUE(are_equal(play_whole(*make_sinc({1, 0, 0, 0, 0, 0x77, 1, 0}), played), highest));
    EXPECT_TRUE(are_equal(play_whole(*make_sinc({0, 0, 0, 0, 0, 0x77, 1, 0}), played), normal));
    EXPECT_FALSE(are_equal(highest, normal));
}

TEST(Sinc, AQualityWithoutALevelIsNormal) {
    random_source random(1);
    const programme played = mono_noise(44100, 3000, random);
    const programme normal = play_whole(*make_sinc(48000, 2), played);
    for (const std::uint32_t quality : {5U, 7U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(are_equal(play_whole(*make_sinc(48000, quality), played), normal)) << quality;
    }
}

std::string notice_of(std::uint32_t rate_hz) {
    return "Resampler (RetroArch): " + std::to_string(rate_hz) + " Hz sample rate is excluded";
}

TEST(Sinc, ExcludedRatesPassWithANotice) {
    constexpr auto exclusions = "44100, 48000-96000";
    for (const bool excludes : {true, false}) {
        for (const std::uint32_t rate_hz : {44100U, 48000U, 88200U, 22050U, 96001U}) {
            const kept_console console;
            random_source random(1);
            const programme played = mono_noise(rate_hz, 3000, random);
            const auto effect = make_sinc(sinc_payload(32000, 0, excludes, exclusions));
            const bool passes = excludes && rate_hz != 22050 && rate_hz != 96001;
            EXPECT_EQ(are_equal(play(*effect, played, {700, 2}, end_of_playback, random), played), passes) << rate_hz;
            EXPECT_EQ(console.lines, passes ? std::vector{notice_of(rate_hz)} : std::vector<std::string>()) << rate_hz;
        }
    }
}

TEST(Sinc, TheNoticeComesOnceForEachFormatAlsoForTheTargetRate) {
    const kept_console console;
    random_source random(1);
    const auto effect = make_sinc(sinc_payload(48000, 2, true, "48000;8000"));
    play(*effect, noise_in({{48000, 1, 4}, {48000, 2, 3}, {44100, 2, 3}, {8000, 2, 3}}, 300, 0.5, random), {70, 2}, 0,
         random);
    EXPECT_EQ(console.lines, (std::vector{notice_of(48000), notice_of(48000), notice_of(8000)}));
}

TEST(Sinc, TheNoticeComesAgainInTheNextPlayback) {
    const kept_console console;
    random_source random(1);
    const auto effect = make_sinc(sinc_payload(48000, 2, true, "8000"));
    const programme played = mono_noise(8000, 300, random);
    for (std::size_t playback = 1; playback <= 3; ++playback) {
        play_whole(*effect, played, end_of_track);
        play_whole(*effect, played, end_of_playback);
        EXPECT_EQ(console.lines, std::vector(playback, notice_of(8000)));
    }
}

TEST(Sinc, ASeekBringsNoSecondNotice) {
    const kept_console console;
    random_source random(1);
    const auto effect = make_sinc(sinc_payload(48000, 2, true, "8000"));
    const programme played = mono_noise(8000, 300, random);
    for (int seek = 0; seek < 2; ++seek) {
        EXPECT_TRUE(are_equal(play_whole(*effect, played, 0), played));
        effect->flush();
    }
    EXPECT_TRUE(are_equal(play_whole(*effect, played, 0), played));
    EXPECT_EQ(console.lines, std::vector{notice_of(8000)});
}

TEST(Sinc, WithoutAHostTheNoticeIsDropped) {
    random_source random(1);
    const programme played = mono_noise(8000, 300, random);
    EXPECT_TRUE(are_equal(play_whole(*make_sinc(sinc_payload(48000, 2, true, "8000")), played), played));
}

TEST(Sinc, ARateThatCannotBeConvertedIsABadAllocationAtItsFirstBlock) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t target_hz;
        std::uint32_t quality;
    };
    const row table[] = {
        {44100, 0, 2},
        {384000, 1500, 2},  // 2^24 ÷ ratio reaches 2^32
        {384000, 375, 0},   // 2^22 ÷ ratio
        {1, 4294967295, 4}, // a step of 0.004, which is rounded to 0
    };
    random_source random(1);
    for (const row& line : table) {
        const auto effect = make_sinc(line.target_hz, line.quality);
        for (int attempt = 0; attempt < 2; ++attempt) {
            strict_list list;
            list.append(noise(random, 100, 0.5), {line.input_hz, 1, 0x4});
            EXPECT_EQ(thrown_text<std::bad_alloc>([&] { effect->run(&list, nullptr, 0); }), "bad allocation")
                << line.input_hz << " to " << line.target_hz;
            EXPECT_EQ(list.get_count(), 1U); // as it was
        }
        effect->flush();
        EXPECT_EQ(effect->get_latency(), 0.0);
        const programme passing = noise_in({{line.target_hz, 1, 0x4}}, 100, 0.5, random);
        if (line.target_hz != 0) {
            EXPECT_TRUE(are_equal(play_whole(*effect, passing), passing)) << line.target_hz;
        }
    }
}

TEST(Sinc, BlocksWithoutAudioAreDroppedAndChangeNothing) {
    random_source random(1);
    const programme played = mono_noise(44100, 5000, random);
    const auto effect = make_sinc(48000, 2);
    programme out;
    for (const std::size_t first : {0U, 2500U}) {
        strict_list list;
        list.append({}, {96000, 1, 0x4});
        list.append(noise(random, 20, 0.5), {0, 2, 0x3});
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).set_channels(0, 0x3);
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).drop_buffer();
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).claim_frames(21);
        list.append(std::span(played[0].samples).subspan(first, 2500), played[0].format);
        effect->run(&list, nullptr, first == 0 ? 0 : end_of_playback);
        for (std::size_t i = 0; i < list.get_count(); ++i) {
            join(out, {{list.at(i).format(), list.at(i).samples()}});
        }
    }
    EXPECT_TRUE(are_equal(out, play_whole(*make_sinc(48000, 2), played)));
}

/// The lengths at which something changes, and a lot of others.
std::vector<std::size_t> tried_lengths(random_source& random, std::size_t others) {
    std::vector<std::size_t> lengths{0, 1, 2, 63, 64, 65, 66, 1023, 1024, 1025, 2047, 2048, 2049};
    for (std::size_t i = 0; i < others; ++i) {
        lengths.push_back(pick(random, 0, 5000));
    }
    return lengths;
}

TEST(Sinc, AsManyFramesComeOutAsBelongToTheTime) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t target_hz;
        std::uint32_t lowest_quality;
        std::uint32_t highest_quality;
    };
    const row table[] = {
        {44100, 48000, 0, 4}, {48000, 44100, 0, 3}, {44100, 96000, 0, 2}, {96000, 44100, 0, 2},
        {22050, 48000, 0, 2}, {96000, 48000, 0, 2}, {8000, 44100, 0, 1},  {44100, 8000, 0, 2},
    };
    random_source random(1);
    for (const row& line : table) {
        for (std::uint32_t quality = line.lowest_quality; quality <= line.highest_quality; ++quality) {
            const auto effect = make_sinc(line.target_hz, quality);
            for (const std::size_t frames : tried_lengths(random, KELVANE_SEEDED_LENGTHS)) {
                const programme out = play(*effect, mono_noise(line.input_hz, frames, random),
                                           {pick(random, 1, 3000), 3}, end_of_playback, random);
                ASSERT_EQ(frames_of(out), expected_frames(frames, line.input_hz, line.target_hz))
                    << frames << " frames, " << line.input_hz << " to " << line.target_hz << ", quality " << quality;
            }
        }
    }
}

TEST(Sinc, AnyRatesAndSpeakersKeepTheLength) {
    random_source random(1);
    for (int round = 0; round < 100; ++round) {
        const auto input_hz = static_cast<std::uint32_t>(pick(random, 1000, 400'000));
        const auto target_hz = static_cast<std::uint32_t>(pick(random, input_hz / 8, 400'000));
        const auto quality = static_cast<std::uint32_t>(pick(random, 0, round % 10 == 0 ? 4 : 2));
        const auto channels = static_cast<std::uint32_t>(pick(random, 1, 9));
        const std::size_t frames = pick(random, 1, 3000);
        const programme played = noise_in({{input_hz, channels, 0}}, frames, 0.9, random);
        const programme out = play(*make_sinc(target_hz, quality), played, {700, 3}, end_of_playback, random);
        EXPECT_EQ(frames_of(out), expected_frames(frames, input_hz, target_hz))
            << frames << " frames of " << channels << " channels, " << input_hz << " to " << target_hz << ", quality "
            << quality;
    }
}

TEST(Sinc, NothingIsLostWhereTheWindowIsLongerThanWhatIsHeld) {
    random_source random(1);
    for (const std::size_t frames : {1U, 500U, 1024U, 3000U, 44100U}) {
        const programme out = play_whole(*make_sinc(44100, 4), mono_noise(176400, frames, random));
        EXPECT_EQ(frames_of(out), expected_frames(frames, 176400, 44100)) << frames;
    }
}

TEST(Sinc, TheEndOfAStreamIsOneBlock) {
    struct row {
        std::uint32_t input_hz;
        std::uint32_t target_hz;
        std::uint32_t quality;
        std::size_t frames;
        std::size_t due;
    };
    const row table[] = {
        {44100, 48000, 2, 500, 544},   {44100, 48000, 2, 1, 1}, {8000, 96000, 0, 1023, 12276},
        {176400, 44100, 4, 1023, 256}, // the window is longer than what is held: silence follows in pieces
        {96000, 1000, 2, 1000, 10},
    };
    random_source random(1);
    for (const row& line : table) {
        const auto effect = make_sinc(line.target_hz, line.quality);
        strict_list list;
        list.append(noise(random, 2 * line.frames, 0.9), {line.input_hz, 2, 0x30});
        effect->run(&list, nullptr, end_of_playback);
        ASSERT_EQ(list.get_count(), 1U) << line.frames << " frames to " << line.target_hz;
        EXPECT_EQ(list.at(0).get_sample_count(), line.due);
        EXPECT_EQ(list.at(0).format(), (block_format{line.target_hz, 2, 0x30})) << line.target_hz;
    }
}

TEST(Sinc, AHalfFrameFallsAsTheDoublesFall) {
    random_source random(1);
    EXPECT_EQ(frames_of(play_whole(*make_sinc(48000, 2), mono_noise(96000, 27, random))), 13U);
    EXPECT_EQ(frames_of(play_whole(*make_sinc(48000, 2), mono_noise(96000, 1, random))), 1U);
}

TEST(Sinc, AnyCuttingIntoBlocksGivesTheSameBits) {
    random_source random(1);
    for (std::uint32_t quality = 0; quality < 5; ++quality) {
        for (const std::uint32_t target_hz : {96000U, 48000U, 32000U}) {
            const programme played = noise_in({{44100, 2, 0x3}}, 9000, 0.9, random);
            const programme whole = play_whole(*make_sinc(target_hz, quality), played);
            for (const cutting& cut :
                 {cutting{1, 50}, cutting{7, 3}, cutting{1023, 1}, cutting{1025, 2}, cutting{6000, 1}}) {
                const auto effect = make_sinc(target_hz, quality);
                EXPECT_TRUE(are_equal(play(*effect, played, cut, end_of_playback, random), whole))
                    << "to " << target_hz << ", quality " << quality << ", blocks of up to "
                    << cut.longest_block_frames;
            }
        }
    }
}

TEST(Sinc, HoldsBackTheNewest1024Frames) {
    random_source random(1);
    const auto effect = make_sinc(88200, 0);
    EXPECT_EQ(frames_of(play_whole(*effect, mono_noise(44100, 1024, random), 0)), 0U); // primed, and all held
    const std::size_t out = frames_of(play_whole(*effect, mono_noise(44100, 1000, random), 0));
    EXPECT_NEAR(static_cast<double>(out), 2000.0, 6.0); // less the converter's window
}

TEST(Sinc, AfterASeekThereIsNoPreRollAndNoDiscard) {
    random_source random(1);
    // Not primed yet; primed just now, and some of the output still to be discarded; under way.
    for (const std::size_t first_frames : {500U, 1024U, 5000U}) {
        const auto effect = make_sinc(88200, 0);
        play_whole(*effect, mono_noise(44100, first_frames, random), 0);
        effect->flush();
        EXPECT_EQ(effect->get_latency(), 0.0) << first_frames;
        // The newest are held as ever.
        EXPECT_EQ(frames_of(play_whole(*effect, mono_noise(44100, 1024, random), 0)), 0U) << first_frames;
        // 3000 frames are converted. Two of the output lie before the first of them: those are skipped, and no other.
        EXPECT_EQ(frames_of(play_whole(*effect, mono_noise(44100, 3000, random), 0)), 6000U) << first_frames;
    }
}

TEST(Sinc, AFlushBeforeTheFirstBlockOrInAPassingFormatHasNoEffect) {
    random_source random(1);
    const programme played = mono_noise(44100, 3000, random);
    const programme expected = play_whole(*make_sinc(48000, 2), played);
    const auto effect = make_sinc(48000, 2);
    effect->flush();
    EXPECT_TRUE(are_equal(play_whole(*effect, played), expected));
    play_whole(*effect, mono_noise(48000, 100, random), 0);
    effect->flush();
    EXPECT_TRUE(are_equal(play_whole(*effect, played), expected));
    effect->flush();
    EXPECT_TRUE(are_equal(play_whole(*effect, played), expected));
}

/// Whether the samples are equal from the frame `first` to before `last`, of one channel.
bool are_equal_between(const programme& a, const programme& b, std::size_t first, std::size_t last) {
    const auto part = [&](const programme& whole) { return std::span(whole[0].samples).subspan(first, last - first); };
    return std::ranges::equal(part(a), part(b));
}

TEST(Sinc, ASampleThatIsNoNumberSpoilsTheNearEdgeAndDoesNotStay) {
    random_source random(1);
    const programme clean = mono_noise(44100, 6000, random);
    const auto with_no_number_at = [&](std::size_t frame) {
        programme played = clean;
        played[0].samples[frame] = std::nan("");
        return play_whole(*make_sinc(88200, 2), played);
    };
    const programme expected = play_whole(*make_sinc(88200, 2), clean);
    ASSERT_EQ(frames_of(expected), 12'000U);
    // An output frame hears the 8 input frames before it and the 8 behind it.
    const programme early = with_no_number_at(1023);
    EXPECT_TRUE(std::isnan(early[0].samples.front()));
    EXPECT_TRUE(are_equal_between(early, expected, 2 * 8, 2 * 1015));
    EXPECT_TRUE(are_equal_between(early, expected, 2 * 1032, 12'000));
    const programme late = with_no_number_at(6000 - 1024);
    EXPECT_TRUE(are_equal_between(late, expected, 0, 2 * (4976 - 8)));
    EXPECT_TRUE(are_equal_between(late, expected, 2 * (4976 + 9), 2 * (6000 - 8)));
    EXPECT_TRUE(std::isnan(late[0].samples.back()));
    const programme middle = with_no_number_at(3000);
    EXPECT_TRUE(are_equal_between(middle, expected, 0, 2 * 2992));
    EXPECT_TRUE(are_equal_between(middle, expected, 2 * 3009, 12'000));
}

TEST(Sinc, TheLatencyIsWhatWentInLessWhatCameOut) {
    random_source random(1);
    for (const std::uint32_t target_hz : {96000U, 48000U, 22050U}) {
        const auto effect = make_sinc(target_hz, 2);
        expect_counted_latency(*effect, target_hz, random);
        effect->flush();
        expect_counted_latency(*effect, target_hz, random); // counted from the seek on
    }
}

TEST(Sinc, AFormatChangeEndsTheOldStreamInItsOwnSpeakers) {
    random_source random(1);
    const std::vector<block_format> formats{{44100, 2, 0x3}, {44100, 2, 0x30}, {44100, 1, 0x4},
                                            {48000, 1, 0x4}, {22050, 1, 0x4},  {44100, 6, 0x3F}};
    const programme played = noise_in(formats, 2500, 0.9, random);
    programme apart;
    for (const stretch& one : played) {
        join(apart, play_whole(*make_sinc(48000, 2), {one}));
    }
    EXPECT_TRUE(are_equal(play(*make_sinc(48000, 2), played, {600, 4}, end_of_playback, random), apart));
}

TEST(Sinc, TheEndOfATrackChangesNothing) {
    random_source random(1);
    const auto effect = make_sinc(48000, 2);
    EXPECT_FALSE(effect->needs_track_change_mark());
    const programme whole = mono_noise(44100, 6000, random);
    programme halves(2, {whole[0].format, {}});
    halves[0].samples.assign(whole[0].samples.begin(), whole[0].samples.begin() + 3000);
    halves[1].samples.assign(whole[0].samples.begin() + 3000, whole[0].samples.end());
    programme out = play_whole(*effect, {halves[0]}, end_of_track);
    join(out, play_whole(*effect, {halves[1]}));
    EXPECT_TRUE(are_equal(out, play_whole(*make_sinc(48000, 2), whole)));
}

/// One random programme through the effect and through the literal one.
void compare_with_literal(random_source& random, int round) {
    const std::vector<std::uint32_t> rates_hz{8000, 22050, 44100, 48000, 96000};
    const std::vector<block_format> speakers{{0, 1, 0x4}, {0, 2, 0x3}, {0, 2, 0x30}, {0, 3, 0x7}};
    const std::uint32_t target_hz = rates_hz[pick(random, 0, rates_hz.size() - 1)];
    const auto quality = static_cast<std::uint32_t>(pick(random, 0, round % 10 == 0 ? 4 : 2));
    const bool excludes = pick(random, 0, 3) == 0;
    const auto effect = make_sinc(sinc_payload(target_hz, quality, excludes, "8000-22050"));
    literal_resampler literal(target_hz, quality, excludes ? std::set{8000U, 22050U} : std::set<std::uint32_t>());
    programme out;
    for (int step = 0; step < 8; ++step) {
        block_format format = speakers[pick(random, 0, speakers.size() - 1)];
        format.sample_rate_hz = rates_hz[pick(random, 0, rates_hz.size() - 1)];
        const std::size_t frames = pick(random, 0, 2) == 0 ? pick(random, 1, 130) : pick(random, 1, 4000);
        const stretch played{format, noise(random, frames * format.channels, 0.9)};
        const bool ends = pick(random, 0, 4) == 0;
        join(out, play(*effect, {played}, {pick(random, 1, 2500), 3}, ends ? end_of_playback : 0, random));
        literal.play(played);
        if (ends) {
            literal.end();
        } else if (pick(random, 0, 3) == 0) {
            effect->flush();
            literal.flush();
        }
        ASSERT_EQ(effect->get_latency(), literal.latency_s()) << "round " << round << ", step " << step;
    }
    join(out, play_whole(*effect, {}));
    literal.end();
    ASSERT_TRUE(are_equal(out, literal.out)) << "round " << round << ", to " << target_hz << ", quality " << quality;
}

TEST(Sinc, DoesWhatTheLiteralOneDoes) {
    random_source random(1);
    for (int round = 0; round < 100 && !testing::Test::HasFatalFailure(); ++round) {
        compare_with_literal(random, round);
    }
}

TEST(SincFactory, TellsWhichConversionsItCanMake) {
    const conversion_row table[] = {
        {44100, 48000, true},     {48000, 44100, true},   {44100, 44100, true},
        {0, 48000, false},        {44100, 0, false},      {384000, 8000, true},
        {384000, 1501, true},     {384000, 1500, false}, // 2^24 × 256 is 2^32
        {1000, 20'000'000, true}, {4294967295, 1, false}, {4294967295, 4294967295, true},
        {1, 4294967295, true}, // though no converter can be made: two limits tell, both going down
    };
    expect_conversions(sinc_name, table);
}

TEST(SincFactory, MakesThePresetThatTheHostAsksFor) {
    expect_preset_made(sinc_name, 96000, 0.7, sinc_payload(96000, 3));
}

} // namespace
