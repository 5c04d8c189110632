#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto effect_name = "Skip Silence";

/// The payload's fields, which lie in memory as they lie in the payload.
struct stored_fields {
    std::uint32_t minimum_ms;
    std::int32_t threshold_db;
    std::uint32_t keeps_initial;

    bool operator==(const stored_fields&) const = default;
};

void PrintTo(const stored_fields& fields, std::ostream* out) {
    *out << fields.minimum_ms << " ms, " << fields.threshold_db << " dB, " << fields.keeps_initial;
}

host::preset preset_of(const stored_fields& fields) {
    return testing_support::preset_of(effect_name, &fields, sizeof fields);
}

stored_fields fields_of(const host::preset& stored) {
    stored_fields fields{};
    EXPECT_EQ(stored.payload().size(), sizeof fields);
    std::memcpy(&fields, stored.payload().data(), std::min(stored.payload().size(), sizeof fields));
    return fields;
}

std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    return show_dialog(effect_name, opening, acts);
}

/// What the dialog reports when `acts` end it with OK: once, and with the effect's owner.
stored_fields fields_after(const stored_fields& opening, const std::function<void(HWND)>& acts) {
    const auto reported = show(preset_of(opening), acts);
    if (reported.size() != 1) {
        ADD_FAILURE() << reported.size() << " reports";
        return {};
    }
    EXPECT_EQ(reported[0].owner(), built_effects().find(effect_name).identity);
    return fields_of(reported[0]);
}

LRESULT position_of(HWND dialog, int trackbar) {
    return SendMessageW(GetDlgItem(dialog, trackbar), TBM_GETPOS, 0, 0);
}

TEST(SilenceDialog, HasItsTexts) {
    std::wstring title;
    std::vector<std::wstring> texts;
    show(preset_of({5000, -60, 1}), [&](HWND dialog) {
        title = text_of(dialog);
        texts = texts_in(dialog);
        press_cancel(dialog);
    });
    EXPECT_EQ(title, L"Skip Silence Configuration");
    for (const auto* const text :
         {L"Minimum silence duration to activate removal:", L"Short", L"Long", L"Leave the initial period intact",
          L"Silence detection threshold:", L"Quiet", L"Loud", L"OK", L"Cancel"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << text;
    }
}

TEST(SilenceDialog, ShowsTheStoredValuesAndOkHandsThemBackUnmoved) {
    struct row {
        stored_fields stored;
        LRESULT minimum;
        LRESULT threshold;
        std::wstring minimum_text;
        std::wstring threshold_text;
    };
    const row table[] = {
        {{5000, -60, 1}, 5000, 40, L"5000 ms", L"-60 dB"},
        {{200, -100, 0}, 200, 0, L"200 ms", L"-100 dB"},
        {{20000, -20, 1}, 20000, 80, L"20000 ms", L"-20 dB"},
        {{5, -120, 0}, 200, 0, L"5 ms", L"-120 dB"}, // outside the trackbars, and kept
        {{4294967295U, 6, 1}, 20000, 80, L"4294967295 ms", L"6 dB"},
        {{1234, -2147483647 - 1, 1}, 1234, 0, L"1234 ms", L"-2147483648 dB"},
    };
    for (const row& line : table) {
        const stored_fields reported = fields_after(line.stored, [&](HWND dialog) {
            EXPECT_EQ(position_of(dialog, SILENCE_MINIMUM), line.minimum);
            EXPECT_EQ(position_of(dialog, SILENCE_THRESHOLD), line.threshold);
            EXPECT_EQ(text_in(dialog, SILENCE_MINIMUM_NUMBER), line.minimum_text);
            EXPECT_EQ(text_in(dialog, SILENCE_THRESHOLD_NUMBER), line.threshold_text);
            EXPECT_EQ(is_checked(dialog, SILENCE_KEEPS_INITIAL), line.stored.keeps_initial == 1);
            press_ok(dialog);
        });
        EXPECT_EQ(reported, line.stored);
    }
}

TEST(SilenceDialog, AForeignOrShortPresetOpensWithTheDefaults) {
    host::preset shortened = preset_of({777, -33, 0});
    shortened.set_data("abcd", 4);
    for (const host::preset& opening : {made_foreign(preset_of({777, -33, 0})), shortened}) {
        const auto reported = show(opening, press_ok);
        ASSERT_EQ(reported.size(), 1U);
        EXPECT_EQ(fields_of(reported[0]), (stored_fields{5000, -60, 1}));
    }
}

TEST(SilenceDialog, KeysMoveTheTrackbarsAndTheNumbersFollow) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        const HWND minimum = GetDlgItem(dialog, SILENCE_MINIMUM);
        const HWND threshold = GetDlgItem(dialog, SILENCE_THRESHOLD);
        press_key(minimum, VK_RIGHT);
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"5001 ms"));
        press_key(minimum, VK_END);
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"20000 ms"));
        press_key(minimum, VK_HOME);
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"200 ms"));
        press_key(threshold, VK_HOME);
        EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-100 dB"));
        press_key(threshold, VK_END);
        EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-20 dB"));
        press_key(threshold, VK_LEFT);
        EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-21 dB"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (stored_fields{200, -21, 1}));
}

TEST(SilenceDialog, MovingOneTrackbarReadsBoth) {
    const stored_fields reported = fields_after({5, -120, 0}, [](HWND dialog) {
        press_key(GetDlgItem(dialog, SILENCE_THRESHOLD), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-99 dB"));
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"200 ms"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (stored_fields{200, -99, 0}));
}

TEST(SilenceDialog, TheThumbIsDraggedByTheMouse) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        drag_thumb_to_end(GetDlgItem(dialog, SILENCE_MINIMUM));
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"20000 ms"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (stored_fields{20000, -60, 1}));
}

TEST(SilenceDialog, AClickOnTheBoxSetsOrClearsTheFlag) {
    for (const std::uint32_t before : {0U, 1U}) {
        const stored_fields reported = fields_after({5, -60, before}, [&](HWND dialog) {
            press_button(dialog, SILENCE_KEEPS_INITIAL);
            EXPECT_TRUE(wait_until([&] { return is_checked(dialog, SILENCE_KEEPS_INITIAL) == (before == 0); }));
            press_ok(dialog);
        });
        EXPECT_EQ(reported, (stored_fields{5, -60, 1 - before})); // and nothing else
    }
}

TEST(SilenceDialog, EnterIsOk) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        press_key(GetDlgItem(dialog, SILENCE_MINIMUM), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"5001 ms"));
        press_key(GetDlgItem(dialog, SILENCE_MINIMUM), VK_RETURN);
    });
    EXPECT_EQ(reported, (stored_fields{5001, -60, 1}));
}

TEST(SilenceDialog, CancelEscapeAndTheCloseBoxReportNothing) {
    for (const auto& ending : {press_cancel, press_escape, press_close_box}) {
        const auto reported = show(preset_of({5000, -60, 1}), [&](HWND dialog) {
            press_key(GetDlgItem(dialog, SILENCE_MINIMUM), VK_RIGHT);
            EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"5001 ms"));
            ending(dialog);
        });
        EXPECT_TRUE(reported.empty());
    }
}

TEST(SilenceDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        const char* what;
        std::function<void(HWND)> acts;
        bool is_changed;
        stored_fields fields;
    };
    const auto move_and = [](const std::function<void(HWND)>& ending) {
        return [ending](HWND dialog) {
            press_key(GetDlgItem(dialog, SILENCE_THRESHOLD), VK_RIGHT);
            EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-59 dB"));
            ending(dialog);
        };
    };
    const row table[] = {
        {"OK at once", press_ok, false, {5000, -60, 1}},
        {"Cancel at once", press_cancel, false, {5000, -60, 1}},
        {"moved, then OK", move_and(press_ok), true, {5000, -59, 1}},
        {"moved, then Cancel", move_and(press_cancel), false, {5000, -60, 1}},
    };
    for (const row& line : table) {
        host::preset edited = preset_of({5000, -60, 1});
        EXPECT_EQ(edit_by_dialog(effect_name, edited, line.acts), line.is_changed) << line.what;
        EXPECT_EQ(fields_of(edited), line.fields) << line.what;
    }
}

} // namespace
