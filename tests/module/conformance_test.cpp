// One mill for every effect in the service list: a new effect is covered the moment it joins.
#include "host/module/guid_text.h"
#include "tests/module/run_effect.h"
#include "tests/support/built_module.h"
#include "tests/support/observed_list.h"
#include "tests/support/recording_preset.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace testing_support;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr double denormal = std::numeric_limits<double>::denorm_min();
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

/// What an effect does differently by design. An effect without a row does none of it.
struct by_design {
    bool has_payload = false;       ///< its presets are not empty
    bool drops_impossible = false;  ///< takes blocks out that claim samples they do not have
    bool depends_on_blocks = false; ///< where the blocks end shows in the output
    bool changes_length = false;    ///< the number of frames is not kept over a playback
    bool remembers = false;         ///< one sample reaches the output of others
    bool holds_seconds = false;     ///< makes room for seconds of audio, which no memory has at an absurd rate
    bool sets_rates = false;        ///< its payload holds an output rate: any, and so any amount of output
    bool goes_on = false;           ///< a flush is a seek: what follows differs from a new start
    bool refuses_aloud = false;     ///< says "Unsupported format or corrupted file" to some payloads
};

const std::map<std::string, by_design> designs{
    {"Advanced Limiter", {.remembers = true}}, // looks ahead
    {"layout_converter", {.has_payload = true}},
    {"layout_limiter", {.has_payload = true}},
    {"Crossfader", {.has_payload = true, .holds_seconds = true}},
    {"Meier Crossfeed", {.has_payload = true, .remembers = true}}, // a recursive filter
    {"Resampler (RetroArch)",
     {.has_payload = true,
      .drops_impossible = true,
      .changes_length = true,
      .remembers = true,
      .sets_rates = true,
      .goes_on = true}},
    {"Resampler (dBpoweramp/SSRC)",
     {.has_payload = true, .changes_length = true, .remembers = true, .sets_rates = true, .refuses_aloud = true}},
    {"Skip Silence",
     {.has_payload = true, .drops_impossible = true, .depends_on_blocks = true, .changes_length = true}},
};

by_design design_of(const std::string& effect) {
    const auto found = designs.find(effect);
    return found == designs.end() ? by_design{} : found->second;
}

/// No effect lets it through as it is by default: the resamplers make 44100 Hz of it.
constexpr block_format converted_format{48000, 2, 0x3};

/// The first and the last of them leave something in every effect that holds anything.
const std::vector<block_format> common_formats{
    converted_format, {44100, 1, 0x4},   {44100, 2, 0x3},  {48000, 6, 0x3F},
    {48000, 2, 0x3},  {96000, 8, 0x63F}, {44100, 4, 0x33}, converted_format,
};

/// Formats that a decoder should not give but may. The resamplers convert them all by default.
const std::vector<block_format> strange_formats{
    {48000, 1, 0x1},         {48000, 2, 0x30},   {48000, 2, 0x600},  {48000, 2, 0x0},
    {48000, 1, 0x0},         {48000, 8, 0x3F},   {48000, 3, 0x3F},   {1, 2, 0x3},
    {4294967295, 2, 3},      {48000, 11, 0x7FF}, {48000, 12, 0xFFF}, {48000, 3, 0x803},
    {48000, 32, 0xFFFFFFFF},
};

constexpr std::uint32_t absurd_rate_hz = 1'000'000'000;

class Conformance : public testing::TestWithParam<std::string> {
protected:
    const host::effect_entry& effect() const { return built_effects().find(GetParam()); }
    host::service_ptr<velmora::effect_instance> make() const { return make_effect(GetParam()); }
    by_design design() const { return design_of(GetParam()); }

    /// The strange formats of which the effect has to take a playback.
    std::vector<block_format> strange_formats_to_take() const {
        std::vector<block_format> formats = strange_formats;
        if (design().holds_seconds) {
            std::erase_if(formats, [](const block_format& format) { return format.sample_rate_hz >= absurd_rate_hz; });
        }
        return formats;
    }

    /// Plays a little with settings of any kind. Where they set the rate, memory may be too short, and the end of the
    /// stream is not waited for.
    void try_out(velmora::effect_instance& instance, std::vector<block_format> formats) {
        formats.resize(design().sets_rates ? 1 : formats.size());
        const auto flags = design().sets_rates ? 0 : end_of_playback;
        const programme played = noise_in(formats, 500, 0.4, random);
        const std::string said = thrown_text<std::bad_alloc>([&] { play(instance, played, {100, 2}, flags, random); });
        EXPECT_TRUE(said == "nothing thrown" || (design().sets_rates && said == "bad allocation")) << said;
    }

    /// The instance, if the preset serves.
    host::service_ptr<velmora::effect_instance> make_or_refuse(const host::preset& settings) {
        velmora::effect_instance* out = nullptr;
        bool is_made = false;
        const std::string said = thrown_text<std::exception>([&] { is_made = effect().instantiate(&out, settings); });
        EXPECT_TRUE(said == "nothing thrown" ||
                    (design().refuses_aloud && said == "Unsupported format or corrupted file"))
            << said << ", " << settings.payload().size() << " bytes";
        EXPECT_EQ(is_made, out != nullptr) << settings.payload().size() << " bytes";
        return host::service_ptr<velmora::effect_instance>(out);
    }

    programme play_anew(const programme& played, const cutting& cut) {
        return play(*make(), played, cut, end_of_playback, random);
    }

    /// Makes the instance as new: one that goes on from a flush needs an end of playback too.
    void make_as_new(velmora::effect_instance& instance) {
        instance.flush();
        EXPECT_EQ(instance.get_latency(), 0.0);
        if (design().goes_on) {
            play_whole(instance, {});
        }
    }

    /// One call. What leaves it is looked at, and nothing but a lack of memory for an output rate is an excuse.
    void expect_valid_blocks(velmora::effect_instance& instance, const programme& blocks, std::uint32_t flags) {
        strict_list list;
        append(list, blocks);
        const std::string said = thrown_text<std::bad_alloc>([&] { instance.run(&list, nullptr, flags); });
        if (design().sets_rates && said == "bad allocation") {
            return; // the block that could not be converted stays where it was
        }
        EXPECT_EQ(said, "nothing thrown");
        for (std::size_t i = 0; i < list.get_count(); ++i) {
            EXPECT_TRUE(is_valid(list.at(i))) << "block " << i;
        }
    }

    random_source random{20260101};
};

TEST_P(Conformance, TheDefaultPresetIsItsOwnAndMakesAnInstance) {
    EXPECT_EQ(effect().default_preset.owner(), effect().identity);
    EXPECT_EQ(effect().default_preset.payload().empty(), !design().has_payload);
    EXPECT_NE(make(), nullptr);
}

TEST_P(Conformance, TheOwnerOfADefaultPresetIsWrittenFirst) {
    if (effect().is_hidden()) {
        return; // has no default preset of its own
    }
    recording_preset<host::preset> filled;
    effect().factory->get_default_preset(&filled);
    EXPECT_EQ(filled.writes(), (std::vector<std::string>{"set_owner", "set_data"}));
    EXPECT_EQ(filled.kept().owner(), effect().identity);
    EXPECT_EQ(filled.kept().payload(), effect().default_preset.payload());
}

TEST_P(Conformance, APresetOfAnotherOwnerMakesNothing) {
    const auto held = make();
    for (int byte = 0; byte < 16; ++byte) {
        velmora::guid owner = effect().identity;
        reinterpret_cast<unsigned char*>(&owner)[byte] ^= 1U;
        host::preset foreign = effect().default_preset;
        foreign.set_owner(&owner);
        velmora::effect_instance* out = held.get();
        EXPECT_FALSE(effect().instantiate(&out, foreign)) << byte;
        EXPECT_EQ(out, held.get());
    }
    EXPECT_EQ(held->add_ref(), 2U); // the refusals took and gave no reference
    held->release();
}

/// A preset of nobody's, whose payload nobody may look at.
class unreadable_preset final : public velmora::effect_preset {
public:
    velmora::guid* get_owner(velmora::guid* out) const override {
        *out = velmora::guid{};
        return out;
    }
    void set_owner(const velmora::guid*) override { ADD_FAILURE() << "a preset to read is not written"; }
    const void* get_data() const override {
        ADD_FAILURE() << "the payload of another effect is not read";
        return nullptr;
    }
    std::size_t get_data_size() const override { return 4; }
    void set_data(const void*, std::size_t) override { ADD_FAILURE() << "a preset to read is not written"; }
};

TEST_P(Conformance, APresetOfAnotherOwnerIsRefusedBeforeAnyByteIsRead) {
    const unreadable_preset foreign;
    velmora::effect_instance* out = nullptr;
    EXPECT_FALSE(effect().instantiate(&out, foreign));
    EXPECT_EQ(out, nullptr);
}

TEST_P(Conformance, APayloadOfAnySizeIsRefusedOrServes) {
    for (const std::size_t bytes : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 9U, 11U, 12U, 16U, 64U, 65536U}) {
        host::preset malformed = effect().default_preset;
        std::vector<std::uint8_t> payload(bytes); // its end is the allocation's: reading past it is found out
        std::generate(payload.begin(), payload.end(), [&] { return static_cast<std::uint8_t>(pick(random, 0, 255)); });
        malformed.set_data(payload.data(), payload.size());
        const auto instance = make_or_refuse(malformed);
        EXPECT_TRUE(design().has_payload || !instance) << bytes;
        if (instance) {
            try_out(*instance, common_formats);
        }
    }
}

TEST_P(Conformance, NoPayloadOfRandomBytesDoesHarm) {
    constexpr std::size_t longest_bytes = 65536;
    for (int round = 0; round < 300; ++round) {
        const std::size_t longest = round % 3 == 0 ? longest_bytes : 40; // most fields stand at the front
        std::vector<std::uint8_t> payload(pick(random, 0, longest));
        std::generate(payload.begin(), payload.end(), [&] { return static_cast<std::uint8_t>(random()); });
        host::preset fuzzed = effect().default_preset;
        fuzzed.set_data(payload.data(), payload.size());
        if (const auto instance = make_or_refuse(fuzzed)) {
            try_out(*instance, {{44100, 2, 0x3}});
        }
    }
}

TEST_P(Conformance, ANewInstanceReplacesWhatTheReferenceHeld) {
    auto held = make();
    held->add_ref(); // to look at it afterwards
    velmora::effect_instance* out = held.get();
    ASSERT_TRUE(effect().instantiate(&out, effect().default_preset));
    const host::service_ptr<velmora::effect_instance> made(out);
    EXPECT_NE(made, held);
    EXPECT_EQ(made->add_ref(), 2U);
    EXPECT_EQ(made->release(), 1U);
    EXPECT_EQ(held->add_ref(), 2U);
    held->release();
}

TEST_P(Conformance, AnInstanceAnswersToBothIdentitiesAndNoOther) {
    const auto instance = make();
    for (const auto& asked : {velmora::effect_instance::class_id, velmora::effect_instance::abortable_class_id}) {
        velmora::service* out = nullptr;
        ASSERT_TRUE(instance->query(&out, &asked));
        EXPECT_EQ(out, instance.get());
        EXPECT_EQ(out->release(), 1U);
    }
    velmora::service* out = nullptr;
    EXPECT_FALSE(instance->query(&out, &velmora::effect_factory::class_id));
    EXPECT_EQ(out, nullptr);
}

TEST_P(Conformance, WithoutADialogThereIsNothingToEdit) {
    if (effect().is_hidden()) {
        EXPECT_FALSE(effect().has_dialog);
        return;
    }
    velmora::service* out = nullptr;
    const bool has_interface = effect().factory->query(&out, &velmora::effect_factory_with_dialog::class_id);
    EXPECT_EQ(has_interface, effect().has_dialog);
    if (!effect().has_dialog) {
        host::preset edited = effect().default_preset;
        EXPECT_FALSE(effect().factory->edit_settings(&edited, nullptr));
    }
}

#ifndef _WIN32
TEST_P(Conformance, WhereThereAreNoDialogsEditingSaysSo) {
    if (effect().has_dialog) {
        host::preset edited = effect().default_preset;
        EXPECT_EQ(thrown_text<std::exception>([&] { effect().factory->edit_settings(&edited, nullptr); }),
                  "Feature not implemented");
    }
}
#endif

TEST_P(Conformance, BlocksWithoutAudioAreTakenOut) {
    const std::vector<double> samples = noise(random, 20, 0.4);
    strict_list list;
    list.append(samples, {44100, 2, 0x3}).claim_frames(0);
    list.append(samples, {44100, 2, 0x3}).set_channels(0, 0);
    list.append(samples, {0, 2, 0x3});
    make()->run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 0U);
}

TEST_P(Conformance, ABlockWithoutFramesIsLeftAsItIsByTheEffectItself) {
    for (const block_format& format : common_formats) {
        for (const bool has_buffer : {true, false}) {
            strict_block block(noise(random, 24, 0.4), format);
            block.claim_frames(0);
            if (!has_buffer) {
                block.drop_buffer();
            }
            const auto instance = make();
            if (instance->on_block(&block, nullptr)) {
                EXPECT_EQ(block.get_sample_count(), 0U);
            }
            instance->flush();
            const programme clean = noise_in({format}, 100, 0.4, random);
            EXPECT_TRUE(are_equal(play(*instance, clean, {50, 1}, end_of_playback, random), play_anew(clean, {50, 1})));
        }
    }
}

TEST_P(Conformance, BlocksWithoutTheirSamplesPassUnread) {
    const std::vector<double> samples = noise(random, 240, 0.4);
    const auto instance = make();
    for (const block_format& format : common_formats) {
        for (const std::size_t claimed : {std::size_t{1000}, std::numeric_limits<std::size_t>::max() / 2 + 1}) {
            strict_list list;
            list.append(samples, format).claim_frames(claimed);
            strict_block& without_buffer = list.append(samples, format);
            without_buffer.drop_buffer();
            const int changes_before = without_buffer.changes();
            instance->run(&list, nullptr, 0);
            ASSERT_EQ(list.get_count(), design().drops_impossible ? 0U : 2U);
            if (list.get_count() == 2) {
                EXPECT_EQ(list.at(0).changes(), 0) << format.channel_mask;
                EXPECT_EQ(list.at(0).get_sample_count(), claimed);
                EXPECT_EQ(list.at(1).changes(), changes_before) << format.channel_mask;
                EXPECT_EQ(list.at(1).format(), format);
            }
        }
    }
    const programme clean = noise_in({converted_format}, 500, 0.4, random);
    EXPECT_TRUE(are_equal(play(*instance, clean, {500, 1}, end_of_playback, random), play_anew(clean, {500, 1})));
}

TEST_P(Conformance, BlocksWithoutTheirSamplesLeaveNoTraceInAStream) {
    const auto instance = make();
    const auto undisturbed = make();
    struct row {
        std::size_t frames;
        std::uint32_t flags;
    };
    // Where tracks are faded into one another, the second stretch ends within the fade.
    for (const row& line : {row{500, velmora::run_flag::end_of_track}, row{200, 0}, row{500, end_of_playback}}) {
        const programme played = noise_in({converted_format}, line.frames, 0.4, random);
        EXPECT_TRUE(are_equal(play_whole(*instance, played, line.flags), play_whole(*undisturbed, played, line.flags)))
            << "flags " << line.flags;
        for (const block_format& format : common_formats) {
            strict_list impossible;
            append(impossible, noise_in({format, format}, 30, 0.4, random));
            impossible.at(0).claim_frames(1000);
            impossible.at(1).drop_buffer();
            instance->run(&impossible, nullptr, 0);
        }
        EXPECT_EQ(instance->get_latency(), undisturbed->get_latency());
    }
}

TEST_P(Conformance, AnyCuttingIntoBlocksGivesTheSameSamples) {
    if (design().depends_on_blocks) {
        return;
    }
    const programme played = noise_in(common_formats, 3000, 1.5, random);
    const programme whole = play_anew(played, {3000, 1});
    for (const cutting& cut : {cutting{1, 1}, cutting{2, 3}, cutting{7, 1}, cutting{499, 5}, cutting{3000, 9}}) {
        EXPECT_TRUE(are_equal(play_anew(played, cut), whole))
            << "blocks of up to " << cut.longest_block_frames << ", up to " << cut.most_blocks_a_call << " a call";
    }
}

TEST_P(Conformance, EveryFrameComesOutOverAPlayback) {
    if (design().changes_length) {
        return;
    }
    for (const std::vector<block_format>& formats : {common_formats, strange_formats_to_take()}) {
        for (const std::size_t frames : {1U, 2U, 255U, 256U, 1000U}) {
            const programme played = noise_in(formats, frames, 1.5, random);
            EXPECT_EQ(frames_of(play_anew(played, {300, 4})), frames_of(played)) << frames;
        }
    }
}

TEST_P(Conformance, TheRateIsKept) {
    if (design().changes_length) {
        return;
    }
    for (const block_format& format : strange_formats_to_take()) {
        const programme out = play_anew(noise_in({format}, 600, 0.4, random), {100, 2});
        ASSERT_EQ(out.size(), 1U) << format.channel_mask;
        EXPECT_EQ(out[0].format.sample_rate_hz, format.sample_rate_hz);
    }
}

TEST_P(Conformance, AStrangeFormatDoesNoHarm) {
    const auto instance = make();
    for (const block_format& format : strange_formats_to_take()) {
        SCOPED_TRACE(testing::Message() << format.sample_rate_hz << " Hz, " << format.channels << " channels, mask "
                                        << format.channel_mask);
        // Few frames: of each second of one frame a resampler makes thousands.
        expect_valid_blocks(*instance, noise_in({format, format, format}, 3, 1.5, random), 0);
        expect_valid_blocks(*make(), noise_in({format, format, format}, 3, 1.5, random), end_of_playback);
    }
    make_as_new(*instance);
    const programme clean = noise_in({converted_format}, 500, 0.4, random);
    EXPECT_TRUE(are_equal(play(*instance, clean, {500, 1}, end_of_playback, random), play_anew(clean, {500, 1})));
}

TEST_P(Conformance, AStrangeSampleCostsNoOther) {
    if (design().remembers) {
        return;
    }
    for (const block_format& format : common_formats) {
        const programme clean = noise_in({format}, 100, 0.9, random);
        const programme clean_out = play_anew(clean, {30, 1});
        for (const double strange : {not_a_number, infinity, -infinity, denormal, 1e308}) {
            programme spoilt = clean;
            spoilt[0].samples[std::size_t{50} * format.channels] = strange;
            programme out = play_anew(spoilt, {30, 1});
            ASSERT_EQ(frames_of(out), 100U);
            const std::uint32_t channels = out[0].format.channels;
            std::copy_n(clean_out[0].samples.begin() + 50 * std::ptrdiff_t{channels}, channels,
                        out[0].samples.begin() + 50 * std::ptrdiff_t{channels});
            EXPECT_TRUE(are_equal(out, clean_out)) << strange << ", mask " << format.channel_mask;
        }
    }
}

TEST_P(Conformance, AFlushForgetsWhateverCameBefore) {
    const programme clean = noise_in(common_formats, 700, 0.9, random);
    const programme fresh = play_anew(clean, {10'000, 1});
    for (const double strange : {0.5, not_a_number, infinity, denormal}) {
        const auto instance = make();
        programme spoilt = noise_in(common_formats, 300, 0.9, random);
        spoilt.back().samples.assign(spoilt.back().samples.size(), strange);
        play(*instance, spoilt, {100, 2}, 0, random);
        make_as_new(*instance);
        EXPECT_TRUE(are_equal(play(*instance, clean, {10'000, 1}, end_of_playback, random), fresh)) << strange;
    }
}

TEST_P(Conformance, APlaybackAfterTheEndOfAnotherLosesNothing) {
    const auto instance = make();
    for (int playback = 0; playback < 3; ++playback) {
        const programme played = noise_in({converted_format}, 400, 0.4, random);
        const programme out = play(*instance, played, {50, 2}, end_of_playback, random);
        EXPECT_EQ(frames_of(out), frames_of(play_anew(played, {50, 2})));
        EXPECT_TRUE(design().changes_length || frames_of(out) == 400U);
        EXPECT_EQ(instance->get_latency(), 0.0);
    }
}

TEST_P(Conformance, LatencyIsAPlausibleTime) {
    const auto instance = make();
    EXPECT_EQ(instance->get_latency(), 0.0);
    double heard_s = 0.0;
    for (int call = 0; call < 50; ++call) {
        play(*instance, noise_in({converted_format}, 480, 0.4, random), {480, 1}, 0, random);
        heard_s += 0.01;
        EXPECT_GE(instance->get_latency(), 0.0);
        EXPECT_LE(instance->get_latency(), heard_s + 1e-9); // nothing can hold back more than it was given
    }
}

TEST_P(Conformance, AnAbortedCallLeavesAUsableInstance) {
    for (const std::uint32_t flags : {0U, end_of_playback}) {
        const auto instance = make();
        host::abort_switch abort;
        abort.trigger();
        strict_list list;
        list.append(noise(random, 20'000, 0.4), converted_format);
        const std::string said =
            thrown_text<std::exception>([&] { instance->run_abortable(&list, nullptr, flags, &abort); });
        EXPECT_TRUE(said == "nothing thrown" || said == "User abort") << said;
        make_as_new(*instance);
        const programme clean = noise_in({converted_format}, 500, 0.4, random);
        EXPECT_TRUE(are_equal(play(*instance, clean, {500, 1}, end_of_playback, random), play_anew(clean, {500, 1})));
    }
}

TEST_P(Conformance, ABlockThatCannotGrowLeavesAUsableInstance) {
    for (const block_format& format : common_formats) {
        const auto instance = make();
        const std::vector<double> samples = noise(random, std::size_t{100} * format.channels, 0.4);
        strict_list list;
        list.append(samples, format).refuse_growth();
        const std::string said = thrown_text<std::bad_alloc>([&] { instance->run(&list, nullptr, 0); });
        if (said != "nothing thrown") {
            ASSERT_EQ(list.get_count(), 1U);
            EXPECT_EQ(bits_of(list.at(0).samples()), bits_of(samples));
            EXPECT_EQ(list.at(0).format(), format);
        }
        instance->flush();
        const programme clean = noise_in({format}, 500, 0.4, random);
        const programme out = play(*instance, clean, {500, 1}, end_of_playback, random);
        EXPECT_EQ(frames_of(out), frames_of(play_anew(clean, {500, 1})));
        EXPECT_TRUE(design().goes_on || are_equal(out, play_anew(clean, {500, 1})));
    }
}

TEST_P(Conformance, TheEndOfATrackIsAskedForOrLeavesNoTrace) {
    const programme first = noise_in({converted_format}, 500, 0.4, random);
    const programme second = noise_in({converted_format}, 500, 0.4, random);
    const auto with_mark = make();
    if (with_mark->needs_track_change_mark()) {
        return;
    }
    programme marked = play(*with_mark, first, {500, 1}, velmora::run_flag::end_of_track, random);
    for (const stretch& rest : play(*with_mark, second, {500, 1}, end_of_playback, random)) {
        marked.push_back(rest);
    }
    const auto without_mark = make();
    programme unmarked = play(*without_mark, first, {500, 1}, 0, random);
    for (const stretch& rest : play(*without_mark, second, {500, 1}, end_of_playback, random)) {
        unmarked.push_back(rest);
    }
    EXPECT_TRUE(are_equal(marked, unmarked));
}

TEST_P(Conformance, TheEndOfTrackAndPlaybackIsTheEndOfPlayback) {
    const programme first = noise_in({converted_format}, 500, 0.4, random);
    const programme second = noise_in({converted_format}, 500, 0.4, random);
    const auto with_both = make();
    const auto with_one = make();
    constexpr auto both = end_of_playback | velmora::run_flag::end_of_track;
    EXPECT_TRUE(are_equal(play_whole(*with_both, first, both), play_whole(*with_one, first, end_of_playback)));
    EXPECT_EQ(with_both->get_latency(), 0.0);
    EXPECT_TRUE(are_equal(play_whole(*with_both, second, both), play_whole(*with_one, second, end_of_playback)));
}

TEST_P(Conformance, AListThatFailsAtAnyCallLeavesAUsableInstance) {
    const programme played = noise_in({converted_format, {44100, 2, 0x3}}, 8000, 0.4, random);
    const programme clean = noise_in({converted_format}, 500, 0.4, random);
    const programme fresh = play_whole(*make(), clean);
    const auto instance = make();
    std::string said;
    for (int calls = 0; said != "nothing thrown"; ++calls) {
        observed_list list;
        append(list.blocks, played);
        list.before_call = [left = calls](std::string_view) mutable {
            if (left-- == 0) {
                throw std::runtime_error("the list fails");
            }
        };
        said = thrown_text<std::runtime_error>([&] { instance->run(&list, nullptr, end_of_playback); });
        make_as_new(*instance);
        ASSERT_TRUE(are_equal(play_whole(*instance, clean), fresh)) << said << " behind " << calls << " calls";
    }
}

/// One call, each stretch a block; if it is to fail, the list does so when it is asked for the last of them.
programme run_blocks(velmora::effect_instance& effect, const programme& blocks, std::uint32_t flags, bool fails) {
    observed_list list;
    append(list.blocks, blocks);
    list.before_call = [fails, left = blocks.size()](std::string_view call) mutable {
        if (call == "get_item" && --left == 0 && fails) {
            throw std::runtime_error("the list fails");
        }
    };
    EXPECT_EQ(thrown_text<std::runtime_error>([&] { effect.run(&list, nullptr, flags); }),
              fails ? "the list fails" : "nothing thrown");
    return content_of(list.blocks);
}

TEST_P(Conformance, ACallFromWithinAListLeavesTheCallAroundItWhereItWas) {
    const programme before = noise_in({converted_format}, 8000, 0.4, random);
    const programme within = noise_in({converted_format, converted_format, converted_format}, 500, 0.4, random);
    const programme behind = noise_in({{44100, 2, 0x3}}, 500, 0.4, random);
    for (const bool fails : {false, true}) {
        const auto in_turn = make();
        programme expected = run_blocks(*in_turn, before, 0, false);
        const programme expected_within = run_blocks(*in_turn, within, 0, fails);
        join(expected, run_blocks(*in_turn, behind, end_of_playback, false));
        for (const std::string_view caller : {"get_item", "remove_item"}) {
            const auto nested = make();
            observed_list list;
            append(list.blocks, before);
            list.blocks.append(before[0].samples, converted_format).claim_frames(0); // is removed, whatever the effect
            append(list.blocks, behind);
            programme found_within;
            list.before_call = [&, left = caller == "get_item" ? 2 : 1](std::string_view call) mutable {
                if (call == caller && --left == 0) {
                    found_within = run_blocks(*nested, within, 0, fails);
                }
            };
            nested->run(&list, nullptr, end_of_playback);
            EXPECT_TRUE(are_equal(found_within, expected_within)) << caller << ", " << fails;
            EXPECT_TRUE(are_equal(content_of(list.blocks), expected)) << caller << ", " << fails;
        }
    }
}

std::vector<std::string> effect_names() {
    std::vector<std::string> names;
    for (const host::effect_entry& effect : built_effects().effects()) {
        names.push_back(effect.name);
    }
    return names;
}

std::string as_test_name(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::erase_if(name, [](unsigned char letter) { return std::isalnum(letter) == 0; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(EveryEffect, Conformance, testing::ValuesIn(effect_names()), as_test_name);

TEST(Designs, NameEffectsThatExist) {
    for (const auto& [name, design] : designs) {
        EXPECT_NO_THROW(built_effects().find(name)) << name;
    }
}

} // namespace
