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

constexpr auto effect_name = "Crossfader";

host::preset preset_of(std::uint32_t fade_ms) {
    return testing_support::preset_of(effect_name, &fade_ms, sizeof fade_ms);
}

std::uint32_t fade_ms_of(const host::preset& stored) {
    std::uint32_t fade_ms = 0;
    EXPECT_EQ(stored.owner(), built_effects().find(effect_name).identity);
    EXPECT_EQ(stored.payload().size(), sizeof fade_ms);
    std::memcpy(&fade_ms, stored.payload().data(), std::min(stored.payload().size(), sizeof fade_ms));
    return fade_ms;
}

std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    return show_dialog(effect_name, opening, acts);
}

HWND bar_of(HWND dialog) {
    return GetDlgItem(dialog, CROSSFADER_FADE);
}

/// Moves the trackbar one step to the right of 2000, then ends the dialog.
std::function<void(HWND)> move_and(const std::function<void(HWND)>& ending) {
    return [ending](HWND dialog) {
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"2001 ms"));
        ending(dialog);
    };
}

TEST(CrossfaderDialog, HasItsTexts) {
    std::vector<std::wstring> texts;
    show(preset_of(2000), [&](HWND dialog) {
        texts = texts_in(dialog);
        press_cancel(dialog);
    });
    for (const auto* const text : {L"Fade duration:", L"Short", L"Long", L"2000 ms", L"OK", L"Cancel"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << text;
    }
}

TEST(CrossfaderDialog, ShowsTheStoredFadeWithinItsRangeAndOkReportsWhatIsShown) {
    struct row {
        std::uint32_t stored_ms;
        int shown_ms;
    };
    for (const row& line : {row{2000, 2000}, row{200, 200}, row{201, 201}, row{0, 200}, row{20'000, 20'000},
                            row{60'000, 20'000}, row{0xFFFFFFFF, 20'000}}) {
        std::wstring title;
        std::wstring number;
        LRESULT position = 0;
        const auto reported = show(preset_of(line.stored_ms), [&](HWND dialog) {
            title = text_of(dialog);
            number = text_in(dialog, CROSSFADER_NUMBER);
            position = SendMessageW(bar_of(dialog), TBM_GETPOS, 0, 0);
            press_ok(dialog);
        });
        EXPECT_EQ(title, L"Crossfader Configuration");
        EXPECT_EQ(number, std::to_wstring(line.shown_ms) + L" ms") << line.stored_ms;
        EXPECT_EQ(position, line.shown_ms) << line.stored_ms;
        ASSERT_EQ(reported.size(), 1U) << line.stored_ms;
        EXPECT_EQ(fade_ms_of(reported[0]), static_cast<std::uint32_t>(line.shown_ms));
    }
}

TEST(CrossfaderDialog, AForeignOrShortPresetOpensWithTheDefault) {
    host::preset shortened = preset_of(5000);
    shortened.set_data("abc", 3);
    for (const host::preset& opening : {made_foreign(preset_of(5000)), shortened}) {
        std::wstring number;
        const auto reported = show(opening, [&](HWND dialog) {
            number = text_in(dialog, CROSSFADER_NUMBER);
            press_ok(dialog);
        });
        EXPECT_EQ(number, L"2000 ms");
        ASSERT_EQ(reported.size(), 1U);
        EXPECT_EQ(fade_ms_of(reported[0]), 2000U);
    }
}

TEST(CrossfaderDialog, TheNumberFollowsTheKeysAndOkAloneReports) {
    const auto reported = show(preset_of(2000), [](HWND dialog) {
        press_key(bar_of(dialog), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"2001 ms"));
        press_key(bar_of(dialog), VK_HOME);
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"200 ms"));
        press_key(bar_of(dialog), VK_END);
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"20000 ms"));
        press_key(bar_of(dialog), VK_LEFT);
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"19999 ms"));
        press_ok(dialog);
    });
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(fade_ms_of(reported[0]), 19'999U);
}

TEST(CrossfaderDialog, TheThumbIsDraggedByTheMouse) {
    const auto reported = show(preset_of(2000), [](HWND dialog) {
        drag_thumb_to_end(bar_of(dialog));
        EXPECT_TRUE(shows(dialog, CROSSFADER_NUMBER, L"20000 ms"));
        press_ok(dialog);
    });
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(fade_ms_of(reported[0]), 20'000U);
}

TEST(CrossfaderDialog, EnterIsOk) {
    const auto reported = show(preset_of(2000), move_and([](HWND dialog) { press_key(bar_of(dialog), VK_RETURN); }));
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(fade_ms_of(reported[0]), 2001U);
}

TEST(CrossfaderDialog, CancelEscapeAndTheCloseBoxReportNothing) {
    for (const auto& ending : {press_cancel, press_escape, press_close_box}) {
        EXPECT_TRUE(show(preset_of(2000), move_and(ending)).empty());
    }
}

TEST(CrossfaderDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        const char* what;
        std::uint32_t opening_ms;
        std::function<void(HWND)> acts;
        bool is_changed;
        std::uint32_t fade_ms;
    };
    const row table[] = {
        {"OK at once", 2000, press_ok, false, 2000},
        {"Cancel at once", 2000, press_cancel, false, 2000},
        {"moved, then OK", 2000, move_and(press_ok), true, 2001},
        {"moved, then Cancel", 2000, move_and(press_cancel), false, 2000},
        {"OK beyond the range", 60'000, press_ok, true, 20'000},
        {"Cancel beyond the range", 60'000, press_cancel, false, 60'000},
    };
    for (const row& line : table) {
        host::preset edited = preset_of(line.opening_ms);
        EXPECT_EQ(edit_by_dialog(effect_name, edited, line.acts), line.is_changed) << line.what;
        EXPECT_EQ(fade_ms_of(edited), line.fade_ms) << line.what;
    }
}

} // namespace
