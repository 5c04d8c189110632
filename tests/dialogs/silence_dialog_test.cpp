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
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

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
    host::preset made = built_effects().find("Skip Silence").default_preset;
    made.set_data(&fields, sizeof fields);
    return made;
}

stored_fields fields_of(const host::preset& stored) {
    stored_fields fields{};
    EXPECT_EQ(stored.payload().size(), sizeof fields);
    std::memcpy(&fields, stored.payload().data(), std::min(stored.payload().size(), sizeof fields));
    return fields;
}

/// The dialog over no parent, opened with `opening`, worked by `acts`; returns what was reported.
std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    const auto& effect = built_effects().find("Skip Silence");
    const auto factory = host::query_as<velmora::effect_factory_with_dialog>(*effect.factory);
    reported_presets callback;
    {
        const person user(acts);
        factory->show_settings_dialog(&opening, nullptr, &callback);
    }
    return callback.presets();
}

/// What the dialog reports when `acts` end it with OK: once, and with the effect's owner.
stored_fields fields_after(const stored_fields& opening, const std::function<void(HWND)>& acts) {
    const auto reported = show(preset_of(opening), acts);
    if (reported.size() != 1) {
        ADD_FAILURE() << reported.size() << " reports";
        return {};
    }
    EXPECT_EQ(reported[0].owner(), built_effects().find("Skip Silence").identity);
    return fields_of(reported[0]);
}

HWND control_of(HWND dialog, int id) {
    return GetDlgItem(dialog, id);
}

std::wstring text_in(HWND dialog, int id) {
    return text_of(control_of(dialog, id));
}

bool shows(HWND dialog, int id, const std::wstring& text) {
    return wait_until([&] { return text_in(dialog, id) == text; });
}

void press_ok(HWND dialog) {
    PostMessageW(control_of(dialog, IDOK), BM_CLICK, 0, 0);
}

void press_cancel(HWND dialog) {
    PostMessageW(control_of(dialog, IDCANCEL), BM_CLICK, 0, 0);
}

LRESULT position_of(HWND dialog, int trackbar) {
    return SendMessageW(control_of(dialog, trackbar), TBM_GETPOS, 0, 0);
}

bool is_checked(HWND dialog) {
    return SendMessageW(control_of(dialog, SILENCE_KEEPS_INITIAL), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

TEST(SilenceDialog, HasItsTexts) {
    std::wstring title;
    std::vector<std::wstring> texts;
    show(preset_of({5000, -60, 1}), [&](HWND dialog) {
        title = text_of(dialog);
        for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            texts.push_back(text_of(child));
        }
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
            EXPECT_EQ(is_checked(dialog), line.stored.keeps_initial == 1);
            press_ok(dialog);
        });
        EXPECT_EQ(reported, line.stored);
    }
}

TEST(SilenceDialog, AForeignOrShortPresetOpensWithTheDefaults) {
    host::preset foreign = preset_of({777, -33, 0});
    const velmora::guid another{};
    foreign.set_owner(&another);
    host::preset shortened = preset_of({777, -33, 0});
    shortened.set_data("abcd", 4);
    for (const host::preset& opening : {foreign, shortened}) {
        const auto reported = show(opening, [&](HWND dialog) { press_ok(dialog); });
        ASSERT_EQ(reported.size(), 1U);
        EXPECT_EQ(fields_of(reported[0]), (stored_fields{5000, -60, 1}));
    }
}

TEST(SilenceDialog, KeysMoveTheTrackbarsAndTheNumbersFollow) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        const HWND minimum = control_of(dialog, SILENCE_MINIMUM);
        const HWND threshold = control_of(dialog, SILENCE_THRESHOLD);
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
        press_key(control_of(dialog, SILENCE_THRESHOLD), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, SILENCE_THRESHOLD_NUMBER, L"-99 dB"));
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"200 ms"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (stored_fields{200, -99, 0}));
}

TEST(SilenceDialog, TheThumbIsDraggedByTheMouse) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        drag_thumb_to_end(control_of(dialog, SILENCE_MINIMUM));
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"20000 ms"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (stored_fields{20000, -60, 1}));
}

TEST(SilenceDialog, AClickOnTheBoxSetsOrClearsTheFlag) {
    for (const std::uint32_t before : {0U, 1U}) {
        const stored_fields reported = fields_after({5, -60, before}, [&](HWND dialog) {
            PostMessageW(control_of(dialog, SILENCE_KEEPS_INITIAL), BM_CLICK, 0, 0);
            EXPECT_TRUE(wait_until([&] { return is_checked(dialog) == (before == 0); }));
            press_ok(dialog);
        });
        EXPECT_EQ(reported, (stored_fields{5, -60, 1 - before})); // and nothing else
    }
}

TEST(SilenceDialog, EnterIsOk) {
    const stored_fields reported = fields_after({5000, -60, 1}, [](HWND dialog) {
        press_key(control_of(dialog, SILENCE_MINIMUM), VK_RIGHT);
        EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"5001 ms"));
        press_key(control_of(dialog, SILENCE_MINIMUM), VK_RETURN);
    });
    EXPECT_EQ(reported, (stored_fields{5001, -60, 1}));
}

TEST(SilenceDialog, CancelEscapeAndTheCloseBoxReportNothing) {
    const std::function<void(HWND)> endings[] = {
        press_cancel,
        [](HWND dialog) { press_key(control_of(dialog, SILENCE_MINIMUM), VK_ESCAPE); },
        [](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
    };
    for (const auto& ending : endings) {
        const auto reported = show(preset_of({5000, -60, 1}), [&](HWND dialog) {
            press_key(control_of(dialog, SILENCE_MINIMUM), VK_RIGHT);
            EXPECT_TRUE(shows(dialog, SILENCE_MINIMUM_NUMBER, L"5001 ms"));
            ending(dialog);
        });
        EXPECT_TRUE(reported.empty());
    }
}

TEST(SilenceDialog, EditingAnswersWhetherAnythingChanged) {
    const auto& effect = built_effects().find("Skip Silence");
    struct row {
        const char* what;
        std::function<void(HWND)> acts;
        bool is_changed;
        stored_fields fields;
    };
    const auto move_and = [](const std::function<void(HWND)>& ending) {
        return [ending](HWND dialog) {
            press_key(control_of(dialog, SILENCE_THRESHOLD), VK_RIGHT);
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
        bool is_changed = false;
        {
            const person user(line.acts);
            is_changed = effect.factory->edit_settings(&edited, nullptr);
        }
        EXPECT_EQ(is_changed, line.is_changed) << line.what;
        EXPECT_EQ(fields_of(edited), line.fields) << line.what;
    }
}

} // namespace
