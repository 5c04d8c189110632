#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"

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

constexpr auto effect_name = "Meier Crossfeed";

host::preset preset_of(std::int32_t strength) {
    return testing_support::preset_of(effect_name, &strength, sizeof strength);
}

std::int32_t strength_of(const host::preset& stored) {
    std::int32_t strength = -1;
    EXPECT_EQ(stored.payload().size(), sizeof strength);
    std::memcpy(&strength, stored.payload().data(), std::min(stored.payload().size(), sizeof strength));
    return strength;
}

std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    return show_dialog(effect_name, opening, acts);
}

/// The strengths that were reported.
std::vector<std::int32_t> strengths_of(const std::vector<host::preset>& reported) {
    std::vector<std::int32_t> strengths;
    for (const host::preset& live : reported) {
        EXPECT_EQ(live.owner(), built_effects().find(effect_name).identity);
        strengths.push_back(strength_of(live));
    }
    return strengths;
}

/// The same, repetitions in a row once: a key is notified twice, when it goes down and when it comes up.
std::vector<std::int32_t> distinct_strengths(const std::vector<host::preset>& reported) {
    std::vector<std::int32_t> strengths = strengths_of(reported);
    strengths.erase(std::unique(strengths.begin(), strengths.end()), strengths.end());
    return strengths;
}

HWND bar_of(HWND dialog) {
    return GetDlgItem(dialog, CROSSFEED_STRENGTH);
}

/// Moves the trackbar as a single notification, and waits until it is heard.
void move_once(HWND dialog, int position) {
    SendMessageW(bar_of(dialog), TBM_SETPOS, TRUE, position);
    SendMessageW(dialog, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(bar_of(dialog)));
}

TEST(CrossfeedDialog, HasItsTextsAndNoCancel) {
    std::vector<std::wstring> texts;
    show(preset_of(1000), [&](HWND dialog) {
        texts = texts_in(dialog);
        press_ok(dialog);
    });
    std::sort(texts.begin(), texts.end());
    const std::wstring of_the_trackbar;
    EXPECT_EQ(texts,
              (std::vector<std::wstring>{of_the_trackbar, L"10", L"Crossfeed strength", L"OK", L"high", L"low"}));
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
            number = text_in(dialog, CROSSFEED_NUMBER);
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
    host::preset shortened = preset_of(5000);
    shortened.set_data("ab", 2);
    for (const host::preset& opening : {made_foreign(preset_of(5000)), shortened}) {
        std::wstring number;
        const auto reported = show(opening, [&](HWND dialog) {
            number = text_in(dialog, CROSSFEED_NUMBER);
            press_ok(dialog);
        });
        EXPECT_EQ(number, L"10");
        EXPECT_EQ(strengths_of(reported), std::vector<std::int32_t>{1000});
    }
}

TEST(CrossfeedDialog, EachKeyIsHeardAtOnce) {
    const auto reported = show(preset_of(1000), [](HWND dialog) {
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"11"));
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"12"));
        press_key(bar_of(dialog), VK_HOME);
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"1"));
        press_key(bar_of(dialog), VK_END);
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"100"));
        press_ok(dialog);
    });
    EXPECT_EQ(distinct_strengths(reported), (std::vector<std::int32_t>{1100, 1200, 100, 10000}));
}

TEST(CrossfeedDialog, TheThumbIsDraggedByTheMouse) {
    const auto reported = show(preset_of(1000), [](HWND dialog) {
        drag_thumb_to_end(bar_of(dialog));
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"100"));
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
        EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"11"));
        press_key(bar_of(dialog), VK_RETURN);
    });
    ASSERT_FALSE(reported.empty());
    EXPECT_EQ(strength_of(reported.back()), 1100);
}

TEST(CrossfeedDialog, OkReportsTheCurrentPresetOnceMore) {
    const auto reported = show(preset_of(150), [](HWND dialog) {
        move_once(dialog, 20);
        press_ok(dialog);
    });
    EXPECT_EQ(strengths_of(reported), (std::vector<std::int32_t>{2000, 2000}));
}

TEST(CrossfeedDialog, EscapeAndTheCloseBoxHandTheOpeningPresetBackOnce) {
    for (const auto& ending : {press_escape, press_close_box}) {
        const auto reported = show(preset_of(150), [&](HWND dialog) {
            move_once(dialog, 20);
            ending(dialog);
        });
        EXPECT_EQ(strengths_of(reported), (std::vector<std::int32_t>{2000, 150})); // no step of the dialog
    }
}

TEST(CrossfeedDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        const char* what;
        std::function<void(HWND)> acts;
        bool is_changed;
        std::int32_t strength;
    };
    const auto move_and = [](const std::function<void(HWND)>& ending) {
        return [ending](HWND dialog) {
            press_key(bar_of(dialog), VK_RIGHT);
            EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"11"));
            ending(dialog);
        };
    };
    const row table[] = {
        {"OK at once", press_ok, false, 1000},
        {"Escape at once", press_escape, false, 1000},
        {"moved, then OK", move_and(press_ok), true, 1100},
        {"moved, then Escape", move_and(press_escape), false, 1000},
    };
    for (const row& line : table) {
        host::preset edited = preset_of(1000);
        EXPECT_EQ(edit_by_dialog(effect_name, edited, line.acts), line.is_changed) << line.what;
        EXPECT_EQ(strength_of(edited), line.strength) << line.what;
    }
}

} // namespace
