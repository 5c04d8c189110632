#include "frame/effect_base.h"

#include "frame/exceptions.h"
#include "frame/never_abort.h"
#include "host/objects/abort_switch.h"
#include "quillet/quillet.h"
#include "tests/support/strict_block.h"
#include "tests/support/thrown_text.h"
#include "velmora/effect_factory.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kelvane {
namespace {

using testing_support::block_format;
using testing_support::strict_list;
using testing_support::thrown_text;

constexpr block_format mono_44100{44100, 1, 0x4};

/// Records what the base calls; `on_each` is the effect itself.
class recording_effect final : public effect_base {
public:
    using behaviour = std::function<bool(recording_effect&, velmora::sample_block&)>;

    explicit recording_effect(behaviour on_each = keep_all) : on_each_(std::move(on_each)) { add_ref(); }
    ~recording_effect() override {
        if (destroyed != nullptr) {
            *destroyed = true;
        }
    }

    static bool keep_all(recording_effect&, velmora::sample_block&) { return true; }

    bool on_block(velmora::sample_block* block, velmora::abort_signal* abort) override {
        calls.push_back("block " + std::to_string(block->get_sample_count()));
        last_abort = abort;
        last_track = current_track();
        return on_each_(*this, *block);
    }
    bool needs_track_change_mark() override { return wants_track_ends; }
    void on_track_end(velmora::abort_signal* abort) override {
        calls.emplace_back("track end");
        last_abort = abort;
        throw_if_told();
    }
    void on_playback_end(velmora::abort_signal* abort) override {
        calls.emplace_back("playback end");
        last_abort = abort;
        throw_if_told();
        if (emits_at_the_end) {
            emit(7);
        }
    }

    /// A block of `frames` frames, each sample the number of frames.
    void emit(std::size_t frames) {
        const std::vector<double> samples(frames, static_cast<double>(frames));
        emit_block(samples, {44100, 1, 0x4});
    }

    using effect_base::emit_all_or_nothing;

    void* track() const { return current_track(); }

    void throw_if_told() const {
        if (throws_at_the_end) {
            throw mox::exception_overflow();
        }
    }

    std::vector<std::string> calls;
    bool wants_track_ends = false;
    bool emits_at_the_end = false;
    bool throws_at_the_end = false;
    bool* destroyed = nullptr;
    velmora::abort_signal* last_abort = nullptr;
    void* last_track = nullptr;

private:
    behaviour on_each_;
};

strict_list list_of(std::initializer_list<std::size_t> frame_counts) {
    strict_list list;
    for (const std::size_t frames : frame_counts) {
        list.append(std::vector<double>(frames, static_cast<double>(frames)), mono_44100);
    }
    return list;
}

std::vector<std::size_t> frame_counts(strict_list& list) {
    std::vector<std::size_t> counts;
    for (std::size_t i = 0; i < list.get_count(); ++i) {
        counts.push_back(list.at(i).get_sample_count());
    }
    return counts;
}

using counts = std::vector<std::size_t>;
using calls = std::vector<std::string>;

TEST(EffectBase, VisitsBlocksInTheirOrder) {
    recording_effect effect;
    strict_list list = list_of({3, 1, 2});
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(effect.calls, (calls{"block 3", "block 1", "block 2"}));
    EXPECT_EQ(frame_counts(list), (counts{3, 1, 2}));
}

TEST(EffectBase, TakesOutBlocksWithoutAudioUnseen) {
    recording_effect effect;
    strict_list list = list_of({1, 2, 3, 4});
    list.at(0).claim_frames(0);
    list.at(1).set_channels(0, 0);
    list.at(2).set_sample_rate(0);
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(effect.calls, (calls{"block 4"}));
    EXPECT_EQ(frame_counts(list), (counts{4}));
}

TEST(EffectBase, TakesOutWhatTheEffectRefusesAndKeepsTheOrderOfTheRest) {
    recording_effect effect([](auto&, auto& block) { return block.get_sample_count() % 2 == 1; });
    strict_list list = list_of({2, 3, 4, 6, 5, 8});
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(effect.calls.size(), 6U);
    EXPECT_EQ(frame_counts(list), (counts{3, 5}));
}

TEST(EffectBase, AListMayBecomeEmptyAndMayBeEmpty) {
    recording_effect effect([](auto&, auto&) { return false; });
    strict_list list = list_of({1, 2});
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(list.get_count(), 0U);
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(effect.calls.size(), 2U);
}

TEST(EffectBase, EmittedBlocksStandBeforeTheCurrentOneAndAreNotVisited) {
    recording_effect effect([](auto& self, auto& block) {
        self.emit(10 * block.get_sample_count());
        self.emit(100 * block.get_sample_count());
        return block.get_sample_count() != 2;
    });
    strict_list list = list_of({1, 2, 3});
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(effect.calls, (calls{"block 1", "block 2", "block 3"}));
    EXPECT_EQ(frame_counts(list), (counts{10, 100, 1, 20, 200, 30, 300, 3}));
    EXPECT_EQ(list.at(0).samples(), std::vector<double>(10, 10.0));
    EXPECT_EQ(list.at(0).format(), mono_44100);
}

TEST(EffectBase, WhatIsEmittedAtTheEndStandsBehindTheLastBlock) {
    recording_effect effect;
    effect.emits_at_the_end = true;
    strict_list list = list_of({1, 2});
    effect.run(&list, nullptr, velmora::run_flag::end_of_playback);
    EXPECT_EQ(frame_counts(list), (counts{1, 2, 7}));
}

TEST(EffectBase, EndHooksFollowTheFlags) {
    struct row {
        std::uint32_t flags;
        bool wants_track_ends;
        calls expected;
    };
    const row table[] = {
        {0, true, {}},
        {1, true, {"track end"}},
        {1, false, {}},
        {2, true, {"playback end"}},
        {2, false, {"playback end"}},
        {3, true, {"playback end"}},
        {3, false, {"playback end"}},
        {4, true, {}},
        {0xFFFFFFFC, true, {}},
        {0xFFFFFFFF, true, {"playback end"}},
    };
    for (const row& expectation : table) {
        recording_effect effect;
        effect.wants_track_ends = expectation.wants_track_ends;
        strict_list empty;
        effect.run(&empty, nullptr, expectation.flags);
        EXPECT_EQ(effect.calls, expectation.expected) << expectation.flags << expectation.wants_track_ends;
    }
}

TEST(EffectBase, RunGivesASignalThatNeverFires) {
    recording_effect effect;
    strict_list list = list_of({1});
    effect.run(&list, nullptr, 0);
    ASSERT_EQ(effect.last_abort, &never_abort_signal());
    EXPECT_FALSE(effect.last_abort->is_aborting());
}

TEST(EffectBase, NoSignalIsOneThatNeverFires) {
    for (const std::uint32_t flags : {0U, 1U, 2U}) {
        recording_effect effect;
        effect.wants_track_ends = true;
        strict_list list = list_of({std::size_t{flags == 0 ? 1U : 0U}});
        effect.run_abortable(&list, nullptr, flags, nullptr);
        EXPECT_EQ(effect.last_abort, &never_abort_signal()) << flags;
    }
}

TEST(EffectBase, TheHostsSignalReachesBlocksAndHooks) {
    host::abort_switch signal;
    for (const std::uint32_t flags : {0U, 1U, 2U}) {
        recording_effect effect;
        effect.wants_track_ends = true;
        strict_list list = list_of({std::size_t{flags == 0 ? 1U : 0U}}); // no block: only the hook sees the signal
        effect.run_abortable(&list, nullptr, flags, &signal);
        EXPECT_EQ(effect.last_abort, &signal) << flags;
    }
}

TEST(EffectBase, AnExceptionOfAHookPutsTheContextBack) {
    for (const std::uint32_t flags : {1U, 2U}) {
        recording_effect effect;
        effect.wants_track_ends = true;
        effect.throws_at_the_end = true;
        strict_list list;
        int track = 0;
        EXPECT_EQ(thrown_text<std::exception>([&] { effect.run(&list, &track, flags); }), "Overflow");
        EXPECT_EQ(effect.track(), nullptr);
    }
}

TEST(NeverAbort, HandsOutTheEventThatIsNeverSignalled) {
    EXPECT_EQ(never_abort_signal().get_abort_event(), GetInfiniteWaitEvent());
}

TEST(EffectBase, TheTrackIsKnownDuringTheRunOnly) {
    recording_effect effect;
    strict_list list = list_of({1});
    int track = 0;
    effect.run(&list, &track, 0);
    EXPECT_EQ(effect.last_track, &track);
    EXPECT_EQ(effect.track(), nullptr);
}

TEST(EffectBase, AnExceptionPutsTheContextBack) {
    recording_effect effect([](auto& self, auto& block) -> bool {
        self.emit(5);
        if (block.get_sample_count() == 2) {
            throw velmora_io::exception_aborted();
        }
        return true;
    });
    strict_list list = list_of({1, 2, 3});
    int track = 0;
    EXPECT_EQ(thrown_text<std::exception>([&] { effect.run(&list, &track, 0); }), "User abort");
    EXPECT_EQ(effect.track(), nullptr);
    EXPECT_EQ(frame_counts(list), (counts{5, 1, 5, 2, 3})); // what was done so far
    strict_list next = list_of({4});
    effect.run(&next, &track, 0); // and the next call starts at its first block
    EXPECT_EQ(frame_counts(next), (counts{5, 4}));
}

TEST(EffectBase, ANestedCallFindsItsOwnListAndGivesTheOuterOneBack) {
    strict_list inner = list_of({20, 21});
    int inner_track = 0;
    bool is_nested = false;
    recording_effect effect([&](auto& self, auto& block) {
        if (block.get_sample_count() == 2 && !is_nested) {
            is_nested = true;
            self.run(&inner, &inner_track, 0);
        }
        self.emit(10 * block.get_sample_count());
        return true;
    });
    strict_list outer = list_of({1, 2, 3});
    int outer_track = 0;
    effect.run(&outer, &outer_track, 0);
    EXPECT_EQ(effect.calls, (calls{"block 1", "block 2", "block 20", "block 21", "block 3"}));
    EXPECT_EQ(effect.last_track, &outer_track);
    EXPECT_EQ(frame_counts(inner), (counts{200, 20, 210, 21}));
    EXPECT_EQ(frame_counts(outer), (counts{10, 1, 20, 2, 30, 3}));
}

/// A list whose new blocks have no room and cannot grow, while it is refusing.
class refusing_list final : public velmora::block_list {
public:
    std::size_t get_count() override { return list.get_count(); }
    velmora::sample_block* get_item(std::size_t index) override { return list.get_item(index); }
    void remove_item(std::size_t index) override { list.remove_item(index); }
    void remove_all() override { list.remove_all(); }
    velmora::sample_block* insert_item(std::size_t index, std::size_t hint) override {
        velmora::sample_block* const inserted = list.insert_item(index, is_refusing ? 0 : hint);
        if (is_refusing) {
            list.at(index).refuse_growth();
        }
        return inserted;
    }

    strict_list list;
    bool is_refusing = true;
};

TEST(EffectBase, AnEmittedBlockThatCannotGrowLeavesTheListAsItWas) {
    recording_effect effect([](auto& self, auto&) {
        self.emit(9);
        return true;
    });
    refusing_list list;
    list.list = list_of({1});
    EXPECT_THROW(effect.run(&list, nullptr, 0), std::bad_alloc);
    EXPECT_EQ(frame_counts(list.list), (counts{1}));
}

TEST(EffectBase, AnEffectThatTriesAgainEmitsInTheRightPlace) {
    refusing_list list;
    list.list = list_of({1, 2});
    recording_effect effect([&](auto& self, auto& block) {
        list.is_refusing = true;
        EXPECT_THROW(self.emit(9), std::bad_alloc);
        list.is_refusing = false;
        self.emit(10 * block.get_sample_count());
        return true;
    });
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(frame_counts(list.list), (counts{10, 1, 20, 2}));
}

TEST(EffectBase, OfBlocksThatBelongTogetherAllAreEmittedOrNone) {
    strict_list list = list_of({1, 2});
    recording_effect effect([&](auto& self, auto& block) {
        self.emit(5); // one that does not belong to them
        const auto emit_three = [&] {
            for (const std::size_t frames : {10U, 20U, 30U}) {
                self.emit(frames * block.get_sample_count());
            }
        };
        for (const std::size_t taken : {0U, 1U, 2U}) {
            list.refuse_after(taken);
            EXPECT_THROW(self.emit_all_or_nothing(emit_three), std::bad_alloc) << taken;
        }
        list.refuse_after(4);
        self.emit_all_or_nothing(emit_three);
        return block.get_sample_count() != 1;
    });
    effect.run(&list, nullptr, 0);
    EXPECT_EQ(frame_counts(list), (counts{5, 10, 20, 30, 5, 20, 40, 60, 2}));
}

TEST(EffectBaseDeathTest, EmittingOutsideARunStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    recording_effect effect;
    EXPECT_DEATH(effect.emit(1), "VELMORA_BugCheck: audio emitted outside a run");
    strict_list list = list_of({1});
    effect.run(&list, nullptr, 0);
    EXPECT_DEATH(effect.emit(1), "VELMORA_BugCheck: audio emitted outside a run"); // nor behind one
}

TEST(EffectBase, DefaultsOfAnEffectWithoutState) {
    class plain final : public effect_base {
        bool on_block(velmora::sample_block*, velmora::abort_signal*) override { return true; }
    };
    plain effect;
    effect.flush();
    EXPECT_EQ(effect.get_latency(), 0.0);
    EXPECT_FALSE(effect.needs_track_change_mark());
}

TEST(EffectQuery, AnswersToBothIdentitiesAndReleasesWhatTheReferenceHeld) {
    bool destroyed = false;
    auto* const old = new recording_effect;
    old->destroyed = &destroyed;
    recording_effect effect;
    velmora::service* out = old;
    EXPECT_TRUE(effect.query(&out, &velmora::effect_instance::class_id));
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(out, &effect);
    EXPECT_TRUE(effect.query(&out, &velmora::effect_instance::abortable_class_id)); // the same object again
    EXPECT_EQ(effect.add_ref(), 3U);                                                // its own, the reference's, this
}

TEST(EffectQuery, ARefusalLeavesTheReferenceAlone) {
    recording_effect effect;
    recording_effect other;
    velmora::service* out = &other;
    EXPECT_FALSE(effect.query(&out, &velmora::effect_factory::class_id));
    EXPECT_EQ(out, &other);
    EXPECT_EQ(other.add_ref(), 2U);
}

} // namespace
} // namespace kelvane
