// All effects of the list in one chain, in any order and with any settings, over programmes of any formats.
#include "host/settings/worded_settings.h"
#include "tests/module/run_effect.h"
#include "tests/support/built_module.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto end_of_track = velmora::run_flag::end_of_track;
constexpr auto end_of_playback = velmora::run_flag::end_of_playback;

/// Values of each field of the settings. The strengths keep the crossfeed stable at the lowest rate, and the crossfader
/// holds some megabytes at the highest.
const std::map<std::string, std::vector<std::string>> values_of_field{
    {"rate", {"22050", "44100", "48000", "88200"}},
    {"quality", {"Lowest", "Lower", "Normal", "Higher", "Highest"}},
    {"exclude", {"", "44100", "22050;48000-96000"}},
    {"ms", {"10", "50", "200"}},
    {"strength", {"0", "300", "1000", "4000"}},
    {"min_ms", {"0", "100", "300"}},
    {"threshold_db", {"-80", "-50", "-20"}},
    {"keep_initial", {"yes", "no"}},
    {"mask", {"mono", "stereo", "quad", "5.1", "7.1"}},
};

const std::vector<block_format> formats{
    {44100, 2, 0x3},  {44100, 1, 0x4},   {48000, 6, 0x3F}, {22050, 2, 0x3}, {96000, 2, 0x3},    {48000, 8, 0x63F},
    {44100, 4, 0x33}, {48000, 2, 0x600}, {44100, 2, 0x0},  {48000, 3, 0x7}, {44100, 12, 0xFFF},
};

template <class Value>
const Value& any_of(const std::vector<Value>& values, random_source& random) {
    return values[pick(random, 0, values.size() - 1)];
}

/// What a chain is made of.
struct link {
    const host::effect_entry* effect;
    host::preset settings;
    std::string text; ///< as a person would write it
};
using recipe = std::vector<link>;

/// The effect with settings of any kind.
link any_link(const host::effect_entry& effect, random_source& random) {
    link made{&effect, effect.default_preset, effect.name};
    for (const host::worded_field& field : host::describe_settings(made.settings)) {
        const auto values = values_of_field.find(field.name);
        if (values == values_of_field.end()) {
            ADD_FAILURE() << effect.name << " has a field without values: " << field.name;
            continue;
        }
        const std::string assignment = field.name + "=" + any_of(values->second, random);
        host::change_settings(made.settings, assignment);
        made.text += (made.text == effect.name ? ":" : ",") + assignment;
    }
    return made;
}

/// All effects but those left out, in any order.
recipe any_recipe(const std::set<std::string>& left_out, random_source& random) {
    recipe made;
    for (const host::effect_entry& effect : built_effects().effects()) {
        if (!left_out.contains(effect.name)) {
            const auto place = static_cast<std::ptrdiff_t>(pick(random, 0, made.size()));
            made.insert(made.begin() + place, any_link(effect, random));
        }
    }
    return made;
}

std::string to_text(const recipe& links) {
    std::string text;
    for (const link& one : links) {
        text += "\n    " + one.text;
    }
    return text;
}

bool is_usual(const block_format& format) {
    return format.channels <= 32 && format.sample_rate_hz >= 1000;
}

bool holds_numbers(strict_block& block) {
    const double* const first = block.get_data_ro();
    return std::all_of(first, first + block.get_sample_count() * block.get_channels(),
                       [](double sample) { return std::isfinite(sample); });
}

/// The effects of a recipe at work. What each of them lets out is looked at.
class chain {
public:
    explicit chain(const recipe& links) {
        for (const link& one : links) {
            steps_.push_back({one.effect->name, host::instantiate(*one.effect, one.settings)});
        }
    }

    void run(strict_list& list, std::uint32_t flags, velmora::abort_signal& abort) {
        for (const step& one : steps_) {
            one.effect->run_abortable(&list, nullptr, flags, &abort);
            for (std::size_t i = 0; i < list.get_count(); ++i) {
                ASSERT_TRUE(is_valid(list.at(i))) << "behind " << one.name;
                ASSERT_TRUE(is_usual(list.at(i).format())) << "behind " << one.name;
                ASSERT_TRUE(holds_numbers(list.at(i))) << "behind " << one.name;
            }
        }
    }

    void flush() {
        for (const step& one : steps_) {
            one.effect->flush();
        }
    }

    void expect_one_reference_each() {
        for (const step& one : steps_) {
            EXPECT_EQ(one.effect->add_ref(), 2U) << one.name;
            EXPECT_EQ(one.effect->release(), 1U) << one.name;
        }
    }

    void expect_nothing_held() {
        for (const step& one : steps_) {
            EXPECT_EQ(one.effect->get_latency(), 0.0) << one.name;
        }
    }

private:
    struct step {
        std::string name;
        host::service_ptr<velmora::effect_instance> effect;
    };
    std::vector<step> steps_;
};

/// Tracks of some stretches each: changes of format come within tracks and between them.
using album = std::vector<programme>;

stretch any_stretch(random_source& random) {
    const block_format format = any_of(formats, random);
    const double amplitude = any_of<double>({0.0, 1e-5, 0.1, 1.0}, random);
    return {format, noise(random, pick(random, 1, 6000) * format.channels, amplitude)};
}

album any_album(random_source& random) {
    album tracks(3);
    for (programme& track : tracks) {
        track.resize(pick(random, 1, 2));
        std::generate(track.begin(), track.end(), [&] { return any_stretch(random); });
    }
    return tracks;
}

programme play(chain& effects, const album& tracks, const cutting& cut, std::uint32_t flags_behind_last,
               random_source& random) {
    host::abort_switch abort;
    const auto run = [&](strict_list& list, std::uint32_t flags) { effects.run(list, flags, abort); };
    programme heard;
    for (const programme& track : tracks) {
        const std::uint32_t flags = end_of_track | (&track == &tracks.back() ? flags_behind_last : 0U);
        join(heard, play(run, track, cut, flags, random));
    }
    return heard;
}

/// Gives up at the n-th question, and counts them.
class abort_at final : public velmora::abort_signal {
public:
    explicit abort_at(std::size_t question) : question_(question) {}

    bool is_aborting() override { return ++asked_ >= question_; }
    void* get_abort_event() override { return nullptr; }
    std::size_t asked() const { return asked_; }

private:
    std::size_t question_;
    std::size_t asked_ = 0;
};

/// The effects that take frames out or add some.
const std::set<std::string> changing_length{"Resampler (RetroArch)", "Resampler (dBpoweramp/SSRC)", "Skip Silence"};

/// Each seed is a chain of its own.
class AllTogether : public testing::TestWithParam<std::uint64_t> {
protected:
    /// The album on a chain as it is behind a flush. The blocks always end in the same places: they show in Skip
    /// Silence.
    programme play_anew(chain& effects) {
        effects.flush();
        effects.expect_nothing_held();
        random_source same_cuts(GetParam());
        return play(effects, tracks, cut, end_of_playback, same_cuts);
    }

    /// The user goes elsewhere before the album is over.
    void seek_away(chain& effects) { play(effects, tracks, cut, 0, random); }

    /// The user stops the music. A chain of the same links tells how often it asks.
    void give_up(const recipe& links, chain& effects) {
        const block_format format = any_of(formats, random);
        const std::size_t frames = format.sample_rate_hz / 2;
        const std::vector<double> samples = noise(random, frames * format.channels, 0.5);
        const auto run = [&](chain& asking, abort_at& abort) {
            strict_list list;
            list.append(samples, format);
            asking.run(list, 0, abort);
        };
        chain twin(links);
        abort_at never(std::numeric_limits<std::size_t>::max());
        run(twin, never);
        ASSERT_GT(never.asked(), 0U) << "what is long enough to give up has become too short";
        abort_at abort(pick(random, 1, never.asked()));
        effects.flush();
        EXPECT_EQ(thrown_text<std::exception>([&] { run(effects, abort); }), "User abort");
    }

    random_source random{GetParam()};
    album tracks = any_album(random);
    const cutting cut{pick(random, 500, 4000), pick(random, 1, 3)};
};

TEST_P(AllTogether, APlaybackBehindASeekAndBehindAStopIsAsTheFirst) {
    const recipe links = any_recipe({"Resampler (RetroArch)"}, random); // it goes on from a seek
    SCOPED_TRACE(to_text(links));
    chain effects(links);
    const programme first = play_anew(effects);
    ASSERT_GT(frames_of(first), 0U);
    seek_away(effects);
    EXPECT_TRUE(are_equal(play_anew(effects), first)) << "behind a seek";
    give_up(links, effects);
    EXPECT_TRUE(are_equal(play_anew(effects), first)) << "behind a stop";
    effects.expect_one_reference_each();
}

TEST_P(AllTogether, APlaybackToItsEndLeavesNothingOfASeekAndAStopBefore) {
    const recipe links = any_recipe({}, random);
    SCOPED_TRACE(to_text(links));
    chain effects(links);
    const programme first = play_anew(effects);
    ASSERT_GT(frames_of(first), 0U);
    effects.expect_nothing_held();
    give_up(links, effects);
    effects.flush();
    seek_away(effects);
    play_anew(effects); // one of the resamplers goes on from a seek with the sound that it had; an end makes it new
    EXPECT_TRUE(are_equal(play_anew(effects), first));
    effects.expect_one_reference_each();
}

TEST_P(AllTogether, EveryFrameComesOutOnce) {
    const recipe links = any_recipe(changing_length, random);
    SCOPED_TRACE(to_text(links));
    chain effects(links);
    programme whole; // one track, since the crossfader lets two overlap
    for (const programme& track : tracks) {
        join(whole, track);
    }
    const programme heard = play(effects, {whole}, cut, end_of_playback, random);
    EXPECT_EQ(frames_of(heard), frames_of(whole));
}

TEST_P(AllTogether, BlocksOfAnyLengthGiveTheSameSamples) {
    const recipe links = any_recipe({"Skip Silence"}, random); // its cuts depend on where blocks end
    SCOPED_TRACE(to_text(links));
    chain effects(links);
    const programme first = play(effects, tracks, cut, end_of_playback, random);
    ASSERT_GT(frames_of(first), 0U);
    effects.flush();
    EXPECT_TRUE(are_equal(play(effects, tracks, {10'000, 2}, end_of_playback, random), first));
}

TEST_P(AllTogether, TheEndOfPlaybackLeavesNothingBehind) {
    // These two go on from the level and the sound before, until a flush.
    const recipe links = any_recipe({"Meier Crossfeed", "Advanced Limiter"}, random);
    SCOPED_TRACE(to_text(links));
    chain effects(links);
    random_source same_cuts = random;
    const programme first = play(effects, tracks, cut, end_of_playback, random);
    ASSERT_GT(frames_of(first), 0U);
    EXPECT_TRUE(are_equal(play(effects, tracks, cut, end_of_playback, same_cuts), first));
}

INSTANTIATE_TEST_SUITE_P(Chains, AllTogether, testing::Range<std::uint64_t>(0, 24));

} // namespace
