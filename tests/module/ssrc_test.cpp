#include "frame/exceptions.h"
#include "host/objects/abort_switch.h"
#include "tests/module/kept_console.h"
#include "tests/module/resampler_answers.h"
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
constexpr auto end_of_track = velmora::run_flag::end_of_track;

std::size_t expected_frames(std::size_t frames, const rate_pair& rates) {
    return frames * rates.output_hz / rates.input_hz;
}

/// What the converter makes of each stretch alone, in one call; stretches of the target rate stay.
programme converted(const programme& played, std::uint32_t target_hz) {
    programme made;
    for (const auto& [format, samples] : played) {
        const bool passes = format.sample_rate_hz == target_hz;
        const auto channels = static_cast<std::uint16_t>(format.channels);
        join(made, {{{target_hz, format.channels, format.channel_mask},
                     passes ? samples : convert({format.sample_rate_hz, target_hz}, samples, channels)}});
    }
    return made;
}

TEST(Ssrc, TheTargetRatePassesUntouchedAtOnce) {
    random_source random(1);
    const auto effect = make_effect(ssrc_name); // to 44100 Hz
    strict_list list;
    const std::vector<double> samples = noise(random, 600, 1.5);
    for (const block_format& format : {block_format{44100, 2, 0x3}, {44100, 6, 0x3F}, {44100, 6, 0x60F}}) {
        list.append(samples, format);
    }
    effect->run(&list, nullptr, end_of_playback);
    ASSERT_EQ(list.get_count(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(list.at(i).changes(), 0) << i;
    }
    EXPECT_EQ(effect->get_latency(), 0.0);
}

TEST(Ssrc, EveryStreamComesOutAsTheConverterAloneMakesIt) {
    random_source random(2);
    std::vector<rate_pair> pairs = sampled_pairs();
    pairs.push_back({22050, 44100});
    std::uint32_t channels = 1;
    for (const rate_pair& rates : pairs) {
        const programme played = noise_in({{rates.input_hz, channels, 0x3}}, 12'000, 1.5, random);
        const programme expected = converted(played, rates.output_hz);
        const auto effect = make_ssrc(rates.output_hz);
        for (const cutting& cut : {cutting{40, 7}, cutting{5000, 2}, cutting{12'000, 1}}) {
            EXPECT_TRUE(are_equal(play(*effect, played, cut, end_of_playback, random), expected))
                << rates << ", " << channels << " channels, blocks of up to " << cut.longest_block_frames;
        }
        channels = channels % 8 + 1;
    }
}

TEST(Ssrc, TheOutputIsAsLongAsTheInput) {
    random_source random(3);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, rate_pair{48000, 44100}, rate_pair{44100, 88200},
                                   rate_pair{96000, 48000}, rate_pair{8000, 44100}, rate_pair{352800, 44100}}) {
        std::vector<std::size_t> lengths{0, 1, 2, 63, 64, 65, 1023, 1024, 1025, 2048};
        for (int i = 0; i < 40; ++i) {
            lengths.push_back(pick(random, 0, 30'000));
        }
        const auto effect = make_ssrc(rates.output_hz);
        for (const std::size_t frames : lengths) {
            const programme out = play(*effect, mono_noise(rates.input_hz, frames, random), {pick(random, 1, 3000), 3},
                                       end_of_playback, random);
            EXPECT_EQ(frames_of(out), expected_frames(frames, rates)) << rates << ", " << frames << " frames";
        }
    }
}

TEST(Ssrc, ARateAsItPleasesIsConvertedOrPasses) {
    random_source random(4);
    int passed = 0;
    for (int round = 0; round < 40; ++round) {
        const rate_pair rates{static_cast<std::uint32_t>(pick(random, 10, 400) * 100),
                              static_cast<std::uint32_t>(pick(random, 10, 400) * 100)};
        const std::size_t frames = pick(random, 1, 3000);
        const programme played = mono_noise(rates.input_hz, frames, random);
        const programme out = play(*make_ssrc(rates.output_hz), played, {700, 3}, end_of_playback, random);
        if (kelvane::ssrc::ssrc_converter::is_conversion_supported(rates.input_hz, rates.output_hz)) {
            EXPECT_EQ(frames_of(out), expected_frames(frames, rates)) << rates << ", " << frames << " frames";
        } else {
            EXPECT_TRUE(are_equal(out, played)) << rates;
            ++passed;
        }
    }
    EXPECT_GT(passed, 3);
    EXPECT_LT(passed, 37);
}

TEST(Ssrc, AFormatChangeEndsTheOldStreamInItsOwnSpeakers) {
    random_source random(5);
    const std::vector<block_format> formats{
        {44100, 2, 0x3}, {44100, 2, 0x30}, // the mask alone
        {44100, 1, 0x4}, {44100, 3, 0x4},  // the channels alone
        {96000, 3, 0x4},                   // the rate alone
        {48000, 3, 0x4},                   // passes
        {96000, 3, 0x4}, {22050, 6, 0x3F},
    };
    for (const std::size_t frames : {1U, 2500U, 9000U}) {
        const programme played = noise_in(formats, frames, 0.9, random);
        EXPECT_TRUE(
            are_equal(play(*make_ssrc(48000), played, {600, 4}, end_of_playback, random), converted(played, 48000)))
            << frames;
    }
}

TEST(Ssrc, TheTailOfTheOldFormatStandsBeforeTheNewBlock) {
    random_source random(6);
    const auto effect = make_ssrc(48000);
    EXPECT_TRUE(play_whole(*effect, mono_noise(44100, 441, random), 0).empty());
    strict_list list;
    list.append(noise(random, 10, 0.9), {48000, 1, 0x1});
    effect->run(&list, nullptr, 0);
    ASSERT_EQ(list.get_count(), 2U);
    EXPECT_EQ(list.at(0).format(), (block_format{48000, 1, 0x4}));
    EXPECT_EQ(list.at(0).get_sample_count(), 480U);
    EXPECT_EQ(list.at(1).format(), (block_format{48000, 1, 0x1}));
    EXPECT_EQ(list.at(1).changes(), 0);
}

TEST(Ssrc, TheEndOfATrackChangesNothing) {
    random_source random(7);
    const auto effect = make_ssrc(48000);
    EXPECT_FALSE(effect->needs_track_change_mark());
    const stretch whole = mono_noise(44100, 20'000, random)[0];
    const stretch first{whole.format, {whole.samples.begin(), whole.samples.begin() + 7000}};
    const stretch second{whole.format, {whole.samples.begin() + 7000, whole.samples.end()}};
    programme out = play_whole(*effect, {first}, end_of_track);
    join(out, play_whole(*effect, {second}, end_of_track | end_of_playback));
    EXPECT_TRUE(are_equal(out, converted({whole}, 48000)));
}

TEST(Ssrc, AFlushForgetsTheStreamAndEmitsNothing) {
    random_source random(8);
    for (const std::uint32_t rate_hz : {44100U, 96000U, 48000U}) {
        const auto effect = make_ssrc(48000);
        effect->flush(); // nothing to forget
        play_whole(*effect, mono_noise(rate_hz, 20'000, random), 0);
        effect->flush();
        EXPECT_EQ(effect->get_latency(), 0.0);
        EXPECT_TRUE(play_whole(*effect, {}).empty()) << "the end of a playback after a flush";
        const programme next = mono_noise(rate_hz, 5000, random);
        EXPECT_TRUE(are_equal(play_whole(*effect, next), converted(next, 48000))) << rate_hz;
    }
}

TEST(Ssrc, AHostThatGivesUpInTheMiddleMayGoOnAfterAFlush) {
    random_source random(9);
    const auto effect = make_ssrc(48000);
    host::abort_switch abort;
    abort.trigger();
    strict_list list;
    list.append(noise(random, 20'000, 0.9), {44100, 1, 0x4});
    effect->run_abortable(&list, nullptr, 0, &abort);
    EXPECT_GT(effect->get_latency(), 0.0);
    effect->flush();
    const programme next = mono_noise(44100, 5000, random);
    EXPECT_TRUE(are_equal(play_whole(*effect, next), converted(next, 48000)));
    play_whole(*make_ssrc(48000), next, 0); // and is released with a stream in it
}

TEST(Ssrc, TheLatencyIsWhatWentInLessWhatCameOut) {
    random_source random(10);
    for (const std::uint32_t target_hz : {96000U, 48000U, 22050U}) {
        const auto effect = make_ssrc(target_hz);
        EXPECT_EQ(effect->get_latency(), 0.0);
        for (int playback = 0; playback < 2; ++playback) {
            expect_counted_latency(*effect, target_hz, random);
            play_whole(*effect, {});
            EXPECT_EQ(effect->get_latency(), 0.0) << "after the end";
        }
    }
}

/// Out of the usual range, 1 to 256 channels at 1000 to 20000000 Hz, nothing is waited for, neither by the host nor at
/// the end.
TEST(Ssrc, AnUnusualFormatIsConvertedButNotDrained) {
    struct row {
        block_format format;
        std::uint32_t target_hz;
        std::size_t drained_frames;
    };
    const row table[] = {
        {{1000, 1, 0x4}, 48000, 2400},
        {{999, 1, 0x4}, 48000, 0},
        {{500, 2, 0x3}, 48000, 0},
        {{44100, 256, 0x3}, 48000, 54},
        {{24000, 257, 0x3}, 48000, 0},
        {{768'000, 1, 0x4}, 384'000, 25},
        {{20'000'000, 1, 0x4}, 10'000'000, 25},
        {{40'000'000, 1, 0x4}, 20'000'000, 0},
    };
    constexpr std::size_t frames = 50; // all held
    random_source random(11);
    for (const auto& [format, target_hz, drained_frames] : table) {
        const auto label = std::to_string(format.sample_rate_hz) + " Hz, " + std::to_string(format.channels);
        const auto effect = make_ssrc(target_hz);
        EXPECT_TRUE(play_whole(*effect, noise_in({format}, frames, 0.9, random), 0).empty()) << label;
        const double held_s = static_cast<double>(frames) / format.sample_rate_hz;
        EXPECT_EQ(effect->get_latency(), drained_frames == 0 ? 0.0 : held_s) << label;
        EXPECT_EQ(frames_of(play_whole(*effect, {})), drained_frames) << label;
    }
}

TEST(Ssrc, NothingOfAnUnusualFormatReachesTheNextStream) {
    random_source random(18);
    const programme next = mono_noise(44100, 5000, random);
    for (const block_format& format : {block_format{999, 1, 0x4}, {500, 2, 0x3}, {24000, 257, 0x3}}) {
        const auto effect = make_ssrc(48000);
        EXPECT_TRUE(play_whole(*effect, noise_in({format}, 20, 0.9, random), 0).empty()) << format.channels;
        EXPECT_TRUE(are_equal(play_whole(*effect, next), converted(next, 48000))) << format.channels;
    }
}

TEST(Ssrc, MoreChannelsThanTheConverterCanBeToldOfPass) {
    random_source random(17);
    const programme played = noise_in({{44100, 8192, 0x3}}, 2, 0.9, random);
    EXPECT_TRUE(are_equal(play_whole(*make_ssrc(48000), played), played));
}

TEST(Ssrc, ExcludedRatesPassWithoutAWord) {
    struct row {
        std::uint8_t excludes; ///< as stored
        const char* exclusions;
        std::uint32_t rate_hz;
        bool passes;
    };
    const row table[] = {
        {1, "44100;48000", 48000, true},    {1, "44100;48000", 44100, true},  {1, "44100;48000", 47999, false},
        {1, "44100;48000", 44101, false},   {0, "44100;48000", 48000, false}, {1, "", 48000, false},
        {1, "23998-48000", 23998, true},    {1, "23998-48000", 48000, true},  {1, "23998-48000", 23997, false},
        {1, "23998-48000", 48001, false},   {1, "48000-22050", 44100, false}, {1, "8000, 16000 , 24000", 16000, true},
        {0x80, "44100;48000", 48000, true}, // any bit counts
        {1, "32000", 32000, true},          // the target rate too
    };
    random_source random(12);
    const kept_console console;
    for (const row& line : table) {
        const programme played = mono_noise(line.rate_hz, 300, random);
        std::vector<std::uint8_t> payload = ssrc_payload(32000, true, line.exclusions);
        payload.at(8) = line.excludes;
        const auto effect = make_effect(ssrc_name, payload);
        const programme before_end = play(*effect, played, {70, 2}, 0, random);
        EXPECT_EQ(are_equal(before_end, played), line.passes) << line.exclusions << ' ' << line.rate_hz;
        EXPECT_EQ(effect->get_latency() == 0.0, line.passes) << line.exclusions << ' ' << line.rate_hz;
        EXPECT_EQ(play_whole(*effect, {}).empty(), line.passes) << line.exclusions << ' ' << line.rate_hz;
    }
    EXPECT_TRUE(console.lines.empty()) << console.lines.front();
}

TEST(Ssrc, ARefusedRatioPassesWithoutAWord) {
    random_source random(13);
    const kept_console console;
    for (const rate_pair& rates :
         {rate_pair{12000, 352800}, rate_pair{352800, 12000}, rate_pair{48000, 35000}, rate_pair{44740, 48001}}) {
        const programme played = mono_noise(rates.input_hz, 3000, random);
        const auto effect = make_ssrc(rates.output_hz);
        EXPECT_TRUE(are_equal(play(*effect, played, {700, 2}, 0, random), played)) << rates;
        EXPECT_EQ(effect->get_latency(), 0.0) << rates;
        EXPECT_TRUE(play_whole(*effect, {}).empty()) << rates;
    }
    EXPECT_TRUE(console.lines.empty()) << console.lines.front();
}

TEST(Ssrc, BlocksWithoutAudioOrSamplesChangeNothing) {
    random_source random(14);
    const stretch whole = mono_noise(44100, 20'000, random)[0];
    const auto effect = make_ssrc(48000);
    programme out;
    for (const std::ptrdiff_t first : {0, 10'000}) {
        strict_list list;
        list.append({}, {96000, 1, 0x4});
        list.append(noise(random, 20, 0.5), {0, 2, 0x3});
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).set_channels(0, 0x3);
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).drop_buffer();
        list.append(noise(random, 20, 0.5), {32000, 2, 0x3}).claim_frames(11);
        list.append(noise(random, 20, 0.5), {44100, 1, 0x4}).claim_frames(std::size_t{1} << 62U);
        list.append(std::span(whole.samples).subspan(static_cast<std::size_t>(first), 10'000), whole.format);
        effect->run(&list, nullptr, first == 0 ? 0 : end_of_playback);
        ASSERT_GE(list.get_count(), 3U);
        EXPECT_EQ(list.at(1).get_sample_count(), 11U); // those that claim samples pass
        for (std::size_t i = 3; i < list.get_count(); ++i) {
            join(out, {{list.at(i).format(), list.at(i).samples()}});
        }
    }
    EXPECT_TRUE(are_equal(out, converted({whole}, 48000)));
}

TEST(Ssrc, AnEmptyBlockIsDroppedWhateverItsFormat) {
    random_source random(16);
    const programme played = mono_noise(44100, 2000, random);
    const auto effect = make_ssrc(48000);
    EXPECT_TRUE(play_whole(*effect, played, 0).empty());
    for (const block_format& format : {block_format{44100, 1, 0x4}, {96000, 2, 0x3}, {48000, 1, 0x4}, {0, 0, 0}}) {
        strict_block empty({}, format);
        EXPECT_FALSE(effect->on_block(&empty, nullptr)) << format.sample_rate_hz;
    }
    EXPECT_EQ(effect->get_latency(), 2000.0 / 44100);
    EXPECT_TRUE(are_equal(play_whole(*effect, {}), converted(played, 48000)));
}

TEST(Ssrc, PresetsAreReadOrRefused) {
    const host::effect_entry& effect = built_effects().find(ssrc_name);
    struct row {
        std::vector<std::uint8_t> payload;
        const char* said;
    };
    const char* const refused = "Unsupported format or corrupted file";
    for (const auto& [payload, said] : {row{{}, refused}, row{{0x44, 0xAC, 0}, refused}, row{{0xE7, 3, 0, 0}, refused},
                                        row{{1, 0x2D, 0x31, 1}, refused}, row{{0xE8, 3, 0, 0}, "nothing thrown"},
                                        row{{0, 0x2D, 0x31, 1}, "nothing thrown"}, row{ssrc_payload(999), refused}}) {
        host::preset settings = effect.default_preset;
        settings.set_data(payload.data(), payload.size());
        const auto held = make_effect(ssrc_name);
        velmora::effect_instance* out = held.get();
        out->add_ref();
        EXPECT_EQ(thrown_text<velmora_io::exception_io_data>([&] { effect.instantiate(&out, settings); }), said);
        EXPECT_EQ(out == held.get(), said == refused);
        out->release();
    }
}

TEST(Ssrc, AShortPresetConvertsAndExcludesNothing) {
    random_source random(15);
    const programme played = mono_noise(44100, 3000, random);
    EXPECT_TRUE(are_equal(play_whole(*make_effect(ssrc_name, {0x80, 0xBB, 0, 0}), played), converted(played, 48000)));
}

TEST(SsrcFactory, TellsWhichConversionsItCanMake) {
    const conversion_row table[] = {
        {44100, 48000, true},   {48000, 44100, true},
        {22050, 44100, true},   {44100, 44100, true},
        {48000, 32000, true},   {44100, 96000, true},
        {12000, 352800, false}, {352800, 12000, false},
        {48000, 35000, false},  {0, 48000, false},
        {44100, 0, false},      {0, 0, false},
        {44740, 48001, false},  {4294967295, 4294967295, true},
    };
    expect_conversions(ssrc_name, table);
}

TEST(SsrcFactory, MakesThePresetThatTheHostAsksFor) {
    for (const double quality : {0.0, 1.0}) {
        expect_preset_made(ssrc_name, 96000, quality, {0, 0x77, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    }
}

} // namespace
