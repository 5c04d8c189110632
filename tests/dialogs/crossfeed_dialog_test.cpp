#include "resources/control_ids.h"
#include "tests/dialogs/person.h"
#include "tests/dialogs/reported_presets.h"
#include "tests/support/built_module.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

host::preset preset_of(std::int32_t strength) {
    host::preset made = built_effects().find("Meier Crossfeed").default_preset;
    made.set_data(&strength, sizeof strength);
    return made;
}

std::int32_t strength_of(const host::preset& stored) {
    std::int32_t strength = -1;
    EXPECT_EQ(stored.payload().size(), sizeof strength);
    std::memcpy(&strength, stored.payload().data(), std::min(stored.payload().size(), sizeof strength));
    return strength;
}

/// The dialog over no parent, opened with `opening`, worked by `acts`; returns what was reported.
std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    const auto& effect = built_effects().find("Meier Crossfeed");
    const auto factory = host::query_as<velmora::effect_factory_with_dialog>(*effect.factory);
    reported_presets callback;
    {
        const person user(acts);
        factory->show_settings_dialog(&opening, nullptr, &callback);
    }
    return callback.presets();
}

/// The strengths that were reported, repetitions in a row once.
std::vector<std::int32_t> distinct_strengths(const std::vector<host::preset>& reported) {
    std::vector<std::int32_t> strengths;
    for (const host::preset& live : reported) {
        if (strengths.empty() || strengths.back() != strength_of(live)) {
            strengths.push_back(strength_of(live));
        }
    }
    return strengths;
}

HWND bar_of(HWND dialog) {
    return GetDlgItem(dialog, CROSSFEED_STRENGTH);
}

std::wstring number_in(HWND dialog) {
    return text_of(GetDlgItem(dialog, CROSSFEED_NUMBER));
}

void press_ok(HWND dialog) {
    PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
}

TEST(CrossfeedDialog, ShowsTheStoredStrengthAndOkHandsItBackUnmoved) {
    struct row {
        std::int32_t strength;
        int position;
    };
    for (const row& line : {row{1000, 10}, row{150, 1}, row{100, 1}, row{99, 1}, row{0, 1}, row{-5000, 1},
                            row{10000, 100}, row{20000, 100}, row{2550, 25}}) {
        std::wstring title;
        std::wstring number;
        LRESULT position = 0;
        const auto reported = show(preset_of(line.strength), [&](HWND dialog) {
            title = text_of(dialog);
            number = number_in(dialog);
            position = SendMessageW(bar_of(dialog), TBM_GETPOS, 0, 0);
            press_ok(dialog);
        });
        EXPECT_EQ(title, L"Crossfeed Configuration");
        EXPECT_EQ(number, std::to_wstring(line.position)) << line.strength;
        EXPECT_EQ(position, line.position) << line.strength;
        ASSERT_EQ(reported.size(), 1U) << line.strength; // OK alone reports, and keeps a value between two positions
        EXPECT_EQ(strength_of(reported[0]), line.strength);
    }
}

TEST(CrossfeedDialog, AForeignOrShortPresetOpensWithTheDefault) {
    host::preset foreign = preset_of(5000);
    const velmora::guid another{};
    foreign.set_owner(&another);
    host::preset shortened = preset_of(5000);
    shortened.set_data("ab", 2);
    for (const host::preset& opening : {foreign, shortened}) {
        std::wstring number;
        show(opening, [&](HWND dialog) {
            number = number_in(dialog);
            press_ok(dialog);
        });
        EXPECT_EQ(number, L"10");
    }
}

TEST(CrossfeedDialog, EachKeyIsHeardAtOnce) {
    const auto reported = show(preset_of(1000), [](HWND dialog) {
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"11"; }));
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"12"; }));
        press_key(bar_of(dialog), VK_HOME);
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"1"; }));
        press_key(bar_of(dialog), VK_END);
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"100"; }));
        press_ok(dialog);
    });
    // A key is notified twice, when it goes down and when it comes up.
    EXPECT_EQ(distinct_strengths(reported), (std::vector<std::int32_t>{1100, 1200, 100, 10000}));
    for (const host::preset& live : reported) {
        EXPECT_EQ(live.owner(), built_effects().find("Meier Crossfeed").identity);
    }
}

TEST(CrossfeedDialog, TheThumbIsDraggedByTheMouse) {
    const auto reported = show(preset_of(1000), [](HWND dialog) {
        drag_thumb_to_end(bar_of(dialog));
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"100"; }));
        press_ok(dialog);
    });
    const auto strengths = distinct_strengths(reported);
    ASSERT_EQ(strengths.size(), 2U); // over the middle, and at the end
    EXPECT_NEAR(strengths[0], 5000, 300);
    EXPECT_EQ(strengths[1], 10000);
}

TEST(CrossfeedDialog, EnterIsOk) {
    const host::preset opening = preset_of(1000);
    const auto reported = show(opening, [](HWND dialog) {
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"11"; }));
        press_key(bar_of(dialog), VK_RETURN);
    });
    ASSERT_FALSE(reported.empty());
    EXPECT_EQ(strength_of(reported.back()), 1100);
}

TEST(CrossfeedDialog, EscapeAndTheCloseBoxHandTheOpeningPresetBack) {
    const std::function<void(HWND)> endings[] = {
        [](HWND dialog) { press_key(bar_of(dialog), VK_ESCAPE); },
        [](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
    };
    for (const auto& ending : endings) {
        const host::preset opening = preset_of(150); // no step of the dialog: it must come back as it was
        const auto reported = show(opening, [&](HWND dialog) {
            press_key(bar_of(dialog), VK_RIGHT);
            EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"2"; }));
            ending(dialog);
        });
        ASSERT_GE(reported.size(), 2U);
        EXPECT_EQ(strength_of(reported.front()), 200);
        EXPECT_EQ(strength_of(reported.back()), 150);
        EXPECT_EQ(reported.back().owner(), opening.owner());
    }
}

TEST(CrossfeedDialog, EditingAnswersWhetherAnythingChanged) {
    const auto& effect = built_effects().find("Meier Crossfeed");
    struct row {
        const char* what;
        std::function<void(HWND)> acts;
        bool is_changed;
        std::int32_t strength;
    };
    const auto move_and = [](const std::function<void(HWND)>& ending) {
        return [ending](HWND dialog) {
            press_key(bar_of(dialog), VK_RIGHT);
            EXPECT_TRUE(wait_until([&] { return number_in(dialog) == L"11"; }));
            ending(dialog);
        };
    };
    const auto escape = [](HWND dialog) { press_key(bar_of(dialog), VK_ESCAPE); };
    const row table[] = {
        {"OK at once", press_ok, false, 1000},
        {"Escape at once", escape, false, 1000},
        {"moved, then OK", move_and(press_ok), true, 1100},
        {"moved, then Escape", move_and(escape), false, 1000},
    };
    for (const row& line : table) {
        host::preset edited = preset_of(1000);
        bool is_changed = false;
        {
            const person user(line.acts);
            is_changed = effect.factory->edit_settings(&edited, nullptr);
        }
        EXPECT_EQ(is_changed, line.is_changed) << line.what;
        EXPECT_EQ(strength_of(edited), line.strength) << line.what;
    }
}

} // namespace
