#include "tests/module/run_effect.h"
#include "tests/module/slow_skipper.h"
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
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto skip_silence = "Skip Silence";
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

constexpr block_format mono_8k{8000, 1, 0x4};
constexpr std::size_t segment_frames = 800; ///< of that format
constexpr double loud = 0.5;
constexpr double quiet = 1e-4; // -80 dB

host::service_ptr<velmora::effect_instance> make_with(const skipper_settings& chosen) {
    const auto threshold_db = static_cast<std::uint32_t>(chosen.threshold_db);
    return make_effect(skip_silence, u32_bytes({chosen.minimum_ms, threshold_db, chosen.keeps_initial ? 1U : 0U}));
}

/// What a list holds, block by block.
programme blocks_of(strict_list& list) {
    programme blocks;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        blocks.push_back({list.at(i).format(), list.at(i).samples()});
    }
    return blocks;
}

/// Runs one list of blocks; answers the blocks that are in it then.
programme run_list(velmora::effect_instance& effect, const programme& blocks, std::uint32_t flags = 0) {
    strict_list list;
    for (const stretch& block : blocks) {
        list.append(block.samples, block.format);
    }
    host::abort_switch abort;
    effect.run_abortable(&list, nullptr, flags, &abort);
    return blocks_of(list);
}

class SkipSilence : public testing::Test {
protected:
    /// Noise of so many whole segments, with its peak in each of them at `amplitude` exactly; other noise each time.
    std::vector<double> segments_of(std::size_t count, double amplitude) {
        std::vector<double> samples = noise(random_, count * segment_frames, amplitude);
        for (std::size_t first = 0; first < samples.size(); first += segment_frames) {
            samples[first] = amplitude;
        }
        return samples;
    }

private:
    random_source random_{1};
};

std::vector<double> joined(const std::vector<std::vector<double>>& parts) {
    std::vector<double> all;
    for (const auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// A whole playback in blocks of so many frames.
std::vector<double> play_back(velmora::effect_instance& effect, const std::vector<double>& samples,
                              std::size_t block_frames = segment_frames) {
    std::vector<double> out;
    for (std::size_t first = 0; first < samples.size(); first += block_frames) {
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(first);
        const std::size_t frames = std::min(block_frames, samples.size() - first);
        for (const stretch& block :
             run_list(effect, {{mono_8k, {begin, begin + static_cast<std::ptrdiff_t>(frames)}}})) {
            out.insert(out.end(), block.samples.begin(), block.samples.end());
        }
    }
    for (const stretch& block : run_list(effect, {}, end_of_playback)) {
        out.insert(out.end(), block.samples.begin(), block.samples.end());
    }
    return out;
}

std::vector<double> play_back(const skipper_settings& chosen, const std::vector<double>& samples) {
    return play_back(*make_with(chosen), samples);
}

/// One segment of the samples, from the segment with this index on.
std::vector<double> segment_at(const std::vector<double>& samples, std::size_t index) {
    const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(index * segment_frames);
    return {begin, begin + segment_frames};
}

/// The segment with a raised cosine over a second, as the sine of the half angle squared.
std::vector<double> faded(std::vector<double> segment, bool fades_out) {
    for (std::size_t i = 0; i < segment.size(); ++i) {
        const double sine = std::sin(std::acos(-1.0) * static_cast<double>(i) / 8000.0 / 2.0);
        segment[i] *= fades_out ? 1.0 - sine * sine : sine * sine;
    }
    return segment;
}

void expect_near(const std::vector<double>& actual, const std::vector<double>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        ASSERT_NEAR(actual[i], expected[i], 1e-18) << "frame " << i; // of samples of 1e-4
    }
}

TEST_F(SkipSilence, TheDefaultsAre5000MillisecondsMinus60DecibelsAndKeeping) {
    const host::effect_entry& effect = built_effects().find(skip_silence);
    std::vector<std::uint8_t> expected{0x88, 0x13, 0, 0, 0xC4, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0};
    std::vector<std::uint8_t> found;
    for (const std::byte byte : effect.default_preset.payload()) {
        found.push_back(std::to_integer<std::uint8_t>(byte));
    }
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(effect.has_dialog);
}

TEST_F(SkipSilence, TwentySecondsLeaveFiveAndTwoFadedSegments) {
    const auto before = segments_of(10, loud);
    const auto gap = segments_of(200, quiet);
    const auto after = segments_of(10, loud);
    const auto out = play_back(*make_effect(skip_silence), joined({before, gap, after}));
    ASSERT_EQ(out.size(), (10 + 50 + 2 + 10) * segment_frames);
    const std::vector<double> kept(gap.begin(), gap.begin() + 50 * segment_frames);
    EXPECT_EQ(std::vector<double>(out.begin(), out.begin() + 60 * segment_frames), joined({before, kept}));
    expect_near(segment_at(out, 60), faded(segment_at(gap, 50), true));
    expect_near(segment_at(out, 61), faded(segment_at(gap, 199), false));
    EXPECT_EQ(std::vector<double>(out.begin() + 62 * segment_frames, out.end()), after);
}

TEST_F(SkipSilence, WithoutItsInitialPeriodASilenceLeavesTheTwoFadedSegments) {
    const auto before = segments_of(10, loud);
    const auto gap = segments_of(200, quiet);
    const auto after = segments_of(10, loud);
    const auto out = play_back({5000, -60, false}, joined({before, gap, after}));
    ASSERT_EQ(out.size(), (10 + 2 + 10) * segment_frames);
    expect_near(segment_at(out, 10), faded(segment_at(gap, 0), true));
    expect_near(segment_at(out, 11), faded(segment_at(gap, 199), false));
    EXPECT_EQ(std::vector<double>(out.begin() + 12 * segment_frames, out.end()), after);
}

TEST_F(SkipSilence, OnlyASilenceOfTheMinimumIsCut) {
    struct row {
        std::size_t silent_segments;
        bool keeps_initial;
        std::size_t left; ///< segments of the silence
    };
    const row table[] = {
        {9, true, 9},   {10, true, 10}, {11, true, 11}, {12, true, 12}, {13, true, 12},
        {14, true, 12}, {9, false, 9},  {10, false, 2}, {11, false, 2}, {30, false, 2},
    };
    for (const row& line : table) {
        const auto whole =
            joined({segments_of(5, loud), segments_of(line.silent_segments, quiet), segments_of(5, loud)});
        const auto out = play_back({1000, -60, line.keeps_initial}, whole);
        EXPECT_EQ(out.size(), (10 + line.left) * segment_frames) << line.silent_segments << line.keeps_initial;
        if (line.silent_segments < 10 + (line.keeps_initial ? 1 : 0)) {
            EXPECT_EQ(bits_of(out), bits_of(whole)) << line.silent_segments << line.keeps_initial;
        }
    }
}

TEST_F(SkipSilence, APeakAtTheThresholdIsLoud) {
    struct row {
        double peak;
        std::int32_t threshold_db;
        bool is_cut;
    };
    const row table[] = {
        {0.001, -60, false}, {0.00099999, -60, true}, {0.01, -40, false}, {0.0099999, -40, true},
        {0.0, -60, true},    {0.0, -144, true},       {0.0, -145, false}, // digital silence counts as -144.5 dB
    };
    for (const row& line : table) {
        const auto whole = joined({segments_of(3, loud), segments_of(40, line.peak), segments_of(3, loud)});
        const auto out = play_back({1000, line.threshold_db, true}, whole);
        EXPECT_EQ(out.size() < whole.size(), line.is_cut) << line.peak << " at " << line.threshold_db;
    }
}

TEST_F(SkipSilence, AMinimumOfOneSegmentCutsNothing) {
    const auto before = joined({segments_of(5, loud), segments_of(100, quiet)});
    for (const std::uint32_t minimum_ms : {0U, 40U, 149U}) {
        const auto whole = joined({before, segments_of(5, loud)});
        EXPECT_EQ(bits_of(play_back({minimum_ms, -60, false}, whole)), bits_of(whole)) << minimum_ms;
        // At the end one silent segment is a silence: all of it that may stay is its fade.
        const auto out = play_back({minimum_ms, -60, false}, before);
        ASSERT_EQ(out.size(), before.size()) << minimum_ms;
        expect_near(segment_at(out, 104), faded(segment_at(before, 104), true));
        const std::vector<double> rest(before.begin(), before.end() - segment_frames);
        EXPECT_EQ(bits_of({out.begin(), out.end() - segment_frames}), bits_of(rest)) << minimum_ms;
        EXPECT_EQ(bits_of(play_back({minimum_ms, -60, true}, before)), bits_of(before)) << minimum_ms;
    }
    const auto whole = joined({segments_of(5, loud), segments_of(100, quiet), segments_of(5, loud)});
    EXPECT_EQ(play_back({150, -60, false}, whole).size(), 12 * segment_frames);
}

TEST_F(SkipSilence, TheLargestMinimumHoldsAllBackAndLetsAllOut) {
    const auto whole = joined({segments_of(2, loud), segments_of(500, quiet)});
    const auto effect = make_with({4294967295U, -60, true});
    EXPECT_EQ(bits_of(play_back(*effect, whole)), bits_of(whole));
}

TEST_F(SkipSilence, TheSilenceAtTheEndIsCutWithoutAFadeIn) {
    const auto before = segments_of(5, loud);
    const auto silence = segments_of(40, quiet);
    const auto out = play_back({1000, -60, true}, joined({before, silence}));
    ASSERT_EQ(out.size(), (5 + 10 + 1) * segment_frames);
    expect_near(segment_at(out, 15), faded(segment_at(silence, 10), true));
}

TEST_F(SkipSilence, AShortSilenceAtTheEndIsCutWhereNothingIsKept) {
    const auto before = segments_of(5, loud);
    const auto silence = segments_of(3, quiet);
    const auto out = play_back({1000, -60, false}, joined({before, silence}));
    ASSERT_EQ(out.size(), 6 * segment_frames);
    expect_near(segment_at(out, 5), faded(segment_at(silence, 0), true));
}

TEST_F(SkipSilence, PayloadsAreRepaired) {
    struct row {
        std::vector<std::uint8_t> payload;
        std::size_t left; ///< segments of a silence of twenty seconds
    };
    const std::vector<std::uint8_t> one_second_at_60{0xE8, 3, 0, 0, 0xC4, 0xFF, 0xFF, 0xFF};
    const auto with = [&](const std::vector<std::uint8_t>& more) {
        auto payload = one_second_at_60;
        payload.insert(payload.end(), more.begin(), more.end());
        return payload;
    };
    const row table[] = {
        {{}, 52},
        {{0xE8, 3, 0, 0}, 52},
        {{0xE8, 3, 0, 0, 0xC4, 0xFF, 0xFF}, 52},
        {one_second_at_60, 12},
        {with({0}), 12},
        {with({0, 0, 0}), 12},
        {with({0, 0, 0, 0}), 2},
        {with({1, 0, 0, 0}), 12},
        {with({2, 0, 0, 0}), 2},
        {with({0, 0, 0, 0, 1, 1, 1, 1}), 2},
    };
    const auto whole = joined({segments_of(3, loud), segments_of(200, quiet), segments_of(3, loud)});
    for (const row& line : table) {
        EXPECT_EQ(play_back(*make_effect(skip_silence, line.payload), whole).size(), (6 + line.left) * segment_frames)
            << line.payload.size();
    }
}

TEST_F(SkipSilence, LoudAudioIsHeldBackByLessThanTwoSegments) {
    const auto effect = make_effect(skip_silence);
    const auto audio = segments_of(20, loud);
    for (std::size_t first = 0; first < audio.size(); first += 100) {
        const auto begin = audio.begin() + static_cast<std::ptrdiff_t>(first);
        run_list(*effect, {{mono_8k, {begin, begin + 100}}});
        EXPECT_LT(effect->get_latency(), 0.2);
    }
}

TEST_F(SkipSilence, ASegmentLeavesWhenTheNextOneBegins) {
    const auto effect = make_effect(skip_silence);
    EXPECT_TRUE(run_list(*effect, {{mono_8k, segments_of(1, loud)}}).empty());
    EXPECT_EQ(effect->get_latency(), 0.1);
    const programme out = run_list(*effect, {{mono_8k, {0.25}}});
    ASSERT_EQ(out.size(), 1U);
    EXPECT_EQ(out[0].frames(), segment_frames);
    EXPECT_EQ(effect->get_latency(), 1.0 / 8000.0);
}

TEST_F(SkipSilence, BlocksWithoutTheirSamplesOrOfImpossibleFormatGoAndLeaveNoTrace) {
    const auto effect = make_with({500, -60, true});
    const auto audio = segments_of(1, loud);
    run_list(*effect, {{mono_8k, audio}});
    strict_list list;
    list.append(audio, mono_8k).claim_frames(audio.size() + 1);
    list.append(audio, mono_8k).drop_buffer();
    for (const block_format& format : {block_format{999, 1, 0x4}, block_format{20'000'001, 1, 0x4},
                                       block_format{8000, 33, 0}, block_format{8000, 0, 0}}) {
        list.append(audio, format);
    }
    effect->run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 0U);
    EXPECT_EQ(effect->get_latency(), 0.1);
    EXPECT_TRUE(are_equal(run_list(*effect, {}, end_of_playback), {{mono_8k, audio}}));
}

TEST_F(SkipSilence, TheExtremeFormatsPass) {
    random_source random(1);
    for (const block_format& format : {block_format{1000, 1, 0x4}, block_format{20'000'000, 2, 0x3},
                                       block_format{384'000, 32, 0xFFFFFFFF}, block_format{44100, 1, 0x0}}) {
        const programme played = noise_in({format}, 5000, 0.9, random);
        EXPECT_TRUE(are_equal(play(*make_effect(skip_silence), played, {700, 2}, end_of_playback, random), played))
            << format.sample_rate_hz;
    }
}

TEST_F(SkipSilence, SamplesThatAreNotNumbersPassAndCountAsSilenceOthersAsWhatTheyAre) {
    struct row {
        double strange;
        bool is_cut;
    };
    const double denormal = std::numeric_limits<double>::denorm_min();
    for (const row& line :
         {row{not_a_number, true}, row{infinity, false}, row{-infinity, false}, row{denormal, true}}) {
        const auto whole = joined(
            {segments_of(3, loud), std::vector<double>(40 * segment_frames, line.strange), segments_of(3, loud)});
        const auto out = play_back({1000, -60, true}, whole);
        EXPECT_EQ(out.size() / segment_frames, line.is_cut ? 18U : 46U) << line.strange;
        EXPECT_EQ(std::isnan(out[4 * segment_frames]), std::isnan(line.strange));
    }
}

TEST_F(SkipSilence, AnAbortEndsTheCallAndAFlushMakesItUsable) {
    const auto effect = make_effect(skip_silence);
    host::abort_switch abort;
    abort.trigger();
    for (const double amplitude : {loud, quiet}) {
        strict_list list;
        list.append(segments_of(60, amplitude), mono_8k);
        EXPECT_EQ(thrown_text<std::exception>([&] { effect->run_abortable(&list, nullptr, 0, &abort); }), "User abort");
        effect->flush();
        EXPECT_EQ(effect->get_latency(), 0.0);
        const auto clean = joined({segments_of(5, loud), segments_of(70, quiet), segments_of(5, loud)});
        EXPECT_EQ(play_back(*effect, clean), play_back(*make_effect(skip_silence), clean));
    }
}

TEST_F(SkipSilence, OneSegmentAtMostAsksForNoAbort) {
    const auto effect = make_effect(skip_silence);
    host::abort_switch abort;
    abort.trigger();
    strict_list list;
    list.append(segments_of(1, loud), mono_8k);
    EXPECT_NO_THROW(effect->run_abortable(&list, nullptr, 0, &abort));
    EXPECT_NO_THROW(effect->run_abortable(&list, nullptr, end_of_playback, &abort)); // nor does the end of playback
    EXPECT_EQ(list.get_count(), 1U);
}

TEST_F(SkipSilence, AHostWithoutMemoryLeavesAUsableInstance) {
    const auto effect = make_effect(skip_silence);
    for (const double amplitude : {loud, quiet}) {
        strict_list blocks;
        blocks.append(segments_of(60, amplitude), mono_8k);
        blocks.refuse_after(0);
        EXPECT_THROW(effect->run(&blocks, nullptr, 0), std::bad_alloc);
        effect->flush();
        const auto clean = joined({segments_of(5, loud), segments_of(70, quiet), segments_of(5, loud)});
        EXPECT_EQ(play_back(*effect, clean), play_back(*make_effect(skip_silence), clean));
    }
}

/// Takes the samples of the blocks that come before the one which the call was about.
void take_emitted(strict_list& list, std::vector<double>& out) {
    const programme blocks = blocks_of(list);
    for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
        out.insert(out.end(), blocks[i].samples.begin(), blocks[i].samples.end());
    }
}

/// A playback in blocks of half a segment, of two pieces each segment therefore, through a host that is short of memory
/// in two calls of three: it takes no block at all, or one.
std::vector<double> play_back_short_of_memory(velmora::effect_instance& effect, const std::vector<double>& samples) {
    std::vector<double> out;
    for (std::size_t first = 0, call = 0; first < samples.size(); first += segment_frames / 2, ++call) {
        strict_list list;
        if (call % 3 != 0) {
            list.refuse_after(call % 3 - 1);
        }
        list.append(std::span(samples).subspan(first, segment_frames / 2), mono_8k);
        try {
            effect.run(&list, nullptr, 0);
            list.append(std::vector<double>{0.0}, mono_8k);
        } catch (const std::bad_alloc&) { // the block stays in the list
        }
        take_emitted(list, out);
    }
    for (const std::size_t taken : {0U, 1U}) { // of a segment at least
        strict_list list;
        list.refuse_after(taken);
        EXPECT_THROW(effect.run(&list, nullptr, end_of_playback), std::bad_alloc) << taken;
        EXPECT_EQ(list.get_count(), 0U) << taken;
    }
    for (const stretch& block : run_list(effect, {}, end_of_playback)) {
        out.insert(out.end(), block.samples.begin(), block.samples.end());
    }
    return out;
}

TEST_F(SkipSilence, AHostThatIsShortOfMemoryNowAndThenGetsTheSameAudio) {
    for (const bool keeps_initial : {true, false}) {
        for (const std::size_t last_loud : {6U, 0U}) {
            const skipper_settings chosen{600, -60, keeps_initial};
            const auto whole = joined({segments_of(5, loud), segments_of(30, quiet), segments_of(4, loud),
                                       segments_of(5, quiet), segments_of(last_loud, loud)});
            const auto expected = play_back(*make_with(chosen), whole, segment_frames / 2);
            EXPECT_LT(expected.size(), whole.size());
            EXPECT_EQ(bits_of(play_back_short_of_memory(*make_with(chosen), whole)), bits_of(expected))
                << keeps_initial << ", " << last_loud;
        }
    }
}

TEST_F(SkipSilence, PlaybackThatCouldNotEndGoesOnAsIfNothingHadBeen) {
    // The last segment is half full and silent so far when the host has no memory; then it becomes loud,
    // and the silences on both its sides are too short to be cut.
    const auto start = joined({segments_of(2, loud), segments_of(2, quiet), std::vector<double>(segment_frames / 2)});
    programme halves;
    for (std::size_t first = 0; first < start.size(); first += segment_frames / 2) {
        const auto begin = start.begin() + static_cast<std::ptrdiff_t>(first);
        halves.push_back({mono_8k, {begin, begin + segment_frames / 2}});
    }
    const auto rest =
        joined({std::vector<double>(segment_frames / 2, loud), segments_of(4, quiet), segments_of(3, loud)});
    for (const std::size_t taken : {0U, 1U}) {
        const auto effect = make_with({500, -60, false});
        std::vector<double> out;
        for (const stretch& block : run_list(*effect, halves)) {
            out.insert(out.end(), block.samples.begin(), block.samples.end());
        }
        strict_list list;
        list.refuse_after(taken);
        EXPECT_THROW(effect->run(&list, nullptr, end_of_playback), std::bad_alloc) << taken;
        EXPECT_EQ(list.get_count(), 0U) << taken;
        EXPECT_EQ(bits_of(joined({out, play_back(*effect, rest)})), bits_of(joined({start, rest}))) << taken;
    }
}

/// One random listening, for the effect and for the slow model side by side.
class listening {
public:
    listening(const skipper_settings& chosen, std::uint64_t seed)
        : random_(seed), effect_(make_with(chosen)), model_(chosen) {}

    /// Whether both did the same at every call.
    void compare(int calls) {
        for (int call = 0; call < calls; ++call) {
            ASSERT_NO_FATAL_FAILURE(compare_call()) << "call " << call;
        }
        ASSERT_NO_FATAL_FAILURE(compare_run({}, end_of_playback));
        EXPECT_EQ(frames_in_, frames_out_ + flushed_frames_ + model_.dropped_frames());
    }

    std::size_t dropped_frames() const { return model_.dropped_frames(); }

private:
    void compare_call() {
        if (chance(40)) {
            flushed_frames_ += model_.held_frames();
            model_.flush();
            effect_->flush();
            return;
        }
        programme blocks(pick(random_, 0, 3));
        std::generate(blocks.begin(), blocks.end(), [this] { return next_block(); });
        const std::uint32_t track_flag = chance(10) ? velmora::run_flag::end_of_track : 0U;
        compare_run(blocks, track_flag | (chance(60) ? end_of_playback : 0U));
    }

    void compare_run(const programme& blocks, std::uint32_t flags) {
        programme expected;
        for (const stretch& block : blocks) {
            frames_in_ += block.frames();
            append(expected, model_.take(block));
        }
        if ((flags & end_of_playback) != 0) {
            append(expected, model_.end());
        }
        const programme out = run_list(*effect_, blocks, flags);
        frames_out_ += frames_of(out);
        ASSERT_TRUE(are_equal(out, expected)); // block by block
        ASSERT_EQ(effect_->get_latency(), model_.latency_s());
        ASSERT_EQ(frames_in_, frames_out_ + flushed_frames_ + model_.dropped_frames() + model_.held_frames());
    }

    static void append(programme& all, const programme& more) { all.insert(all.end(), more.begin(), more.end()); }

    bool chance(std::size_t one_in) { return pick(random_, 1, one_in) == 1; }

    /// Stays in a format and in silence or not for some blocks, and now and then holds a strange sample.
    stretch next_block() {
        if (chance(8)) {
            format_ = formats_[pick(random_, 0, std::size(formats_) - 1)];
        }
        if (chance(12)) {
            is_silent_ = !is_silent_;
        }
        const std::size_t tenths_longest = chance(10) ? 30 : 1;
        const std::size_t frames = pick(random_, 1, tenths_longest * format_.sample_rate_hz / 8);
        stretch block{format_, noise(random_, frames * format_.channels, is_silent_ ? 1e-4 : 0.7)};
        if (chance(30)) {
            const double strange[] = {not_a_number, infinity, -infinity, 0.001, -0.0};
            block.samples[pick(random_, 0, block.samples.size() - 1)] = strange[pick(random_, 0, 4)];
        }
        return block;
    }

    static constexpr block_format formats_[] = {
        {8000, 1, 0x4}, {11025, 2, 0x3}, {11025, 2, 0x30}, {1000, 1, 0x4}, {1005, 3, 0x7}, {44100, 1, 0x4},
    };

    random_source random_;
    host::service_ptr<velmora::effect_instance> effect_;
    slow_skipper model_;
    block_format format_ = formats_[0];
    bool is_silent_ = false;
    std::size_t frames_in_ = 0;
    std::size_t frames_out_ = 0;
    std::size_t flushed_frames_ = 0;
};

TEST_F(SkipSilence, DoesWhatTheSlowModelDoesBlockForBlock) {
    const skipper_settings table[] = {
        {200, -60, true},  {200, -60, false}, {300, -60, true}, {500, -60, false}, {500, -60, true}, {1000, -60, false},
        {1500, -60, true}, {40, -60, false},  {150, -60, true}, {150, -60, false}, {700, -2, false}, {300, -200, true},
    };
    std::uint64_t seed = 0;
    for (const skipper_settings& chosen : table) {
        std::size_t dropped_frames = 0;
        for (int round = 0; round < 8; ++round) {
            listening one(chosen, ++seed);
            ASSERT_NO_FATAL_FAILURE(one.compare(300))
                << chosen.minimum_ms << " ms, " << chosen.threshold_db << " dB, " << chosen.keeps_initial;
            dropped_frames += one.dropped_frames();
        }
        const bool can_cut = chosen.minimum_ms >= 150 && chosen.threshold_db > -145;
        EXPECT_EQ(dropped_frames > 0, can_cut) << chosen.minimum_ms << ' ' << chosen.threshold_db;
    }
}

TEST_F(SkipSilence, WhereTheBlocksEndDecidesWhereASilenceIsCut) {
    // Loud audio behind silence in one large block is released as far as the minimum asks, and its rest leads the queue
    // when playback ends: the silence behind it is then not known to be one.
    const auto whole = joined({segments_of(1, quiet), segments_of(6, loud), segments_of(4, quiet)});
    const auto effect = make_with({500, -60, false});
    EXPECT_EQ(play_back(*effect, whole, segment_frames).size(), 8 * segment_frames);
    EXPECT_EQ(bits_of(play_back(*effect, whole, whole.size())), bits_of(whole));
}

} // namespace
