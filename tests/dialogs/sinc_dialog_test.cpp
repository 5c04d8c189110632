#include "resources/control_ids.h"
#include "tests/dialogs/person.h"
#include "tests/dialogs/reported_presets.h"
#include "tests/module/sinc_preset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace testing_support;
using payload = std::vector<std::uint8_t>;

host::preset preset_of(const payload& bytes) {
    host::preset made = built_effects().find(resampler_name).default_preset;
    made.set_data(bytes.data(), bytes.size());
    return made;
}

payload payload_of(const host::preset& stored) {
    payload bytes(stored.payload().size());
    std::memcpy(bytes.data(), stored.payload().data(), bytes.size());
    return bytes;
}

/// The dialog over no parent, opened with `opening`, worked by `acts`; returns what was reported.
std::vector<host::preset> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    const auto& effect = built_effects().find(resampler_name);
    const auto factory = host::query_as<velmora::effect_factory_with_dialog>(*effect.factory);
    reported_presets callback;
    {
        const person user(acts);
        factory->show_settings_dialog(&opening, nullptr, &callback);
    }
    return callback.presets();
}

/// The payloads that were reported, repetitions in a row once.
std::vector<payload> distinct_payloads(const std::vector<host::preset>& reported) {
    std::vector<payload> payloads;
    for (const host::preset& live : reported) {
        EXPECT_EQ(live.owner(), built_effects().find(resampler_name).identity);
        payloads.push_back(payload_of(live));
    }
    payloads.erase(std::unique(payloads.begin(), payloads.end()), payloads.end());
    return payloads;
}

HWND control_of(HWND dialog, int id) {
    return GetDlgItem(dialog, id);
}

std::wstring text_in(HWND dialog, int id) {
    return text_of(control_of(dialog, id));
}

void press_button(HWND dialog, int id) {
    PostMessageW(control_of(dialog, id), BM_CLICK, 0, 0);
}

void press_ok(HWND dialog) {
    press_button(dialog, IDOK);
}

/// Where the keys of an editable list go.
HWND typing_field(HWND list) {
    return GetWindow(list, GW_CHILD);
}

void type(HWND field, const std::string& letters) {
    for (const char letter : letters) {
        PostMessageW(field, WM_CHAR, static_cast<WPARAM>(letter), 1);
    }
}

void select_all(HWND field) {
    PostMessageW(field, EM_SETSEL, 0, -1);
}

bool is_excluding(HWND dialog) {
    return SendMessageW(control_of(dialog, SINC_EXCLUDE), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool can_type_exclusions(HWND dialog) {
    return IsWindowEnabled(control_of(dialog, SINC_EXCLUSIONS)) != FALSE;
}

const std::wstring descriptions[] = {
    L"Fastest sinc interpolation, SNR about 40 dB", L"Faster sinc interpolation, SNR about 55 dB",
    L"Fast sinc interpolation, SNR about 70 dB", L"Higher quality sinc interpolation, SNR about 110 dB",
    L"Highest quality sinc interpolation, SNR about 140 dB"};

TEST(SincDialog, HasItsTextsAndLists) {
    std::wstring title;
    std::vector<std::wstring> texts;
    LRESULT rates = 0;
    LRESULT qualities = 0;
    show(preset_of(sinc_payload(44100, 2)), [&](HWND dialog) {
        title = text_of(dialog);
        for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            texts.push_back(text_of(child));
        }
        rates = SendMessageW(control_of(dialog, SINC_RATE), CB_GETCOUNT, 0, 0);
        qualities = SendMessageW(control_of(dialog, SINC_QUALITY), CB_GETCOUNT, 0, 0);
        press_ok(dialog);
    });
    EXPECT_EQ(title, L"RetroArch resampler configuration");
    for (const auto* const text : {L"Target sample rate:", L"Quality:", L"Exclude rates:", L"OK", L"Cancel"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(rates, 11);
    EXPECT_EQ(qualities, 5);
}

TEST(SincDialog, ShowsTheStoredSettingsAndOkHandsThemBackUnchanged) {
    struct row {
        payload stored;
        std::wstring rate;
        std::size_t quality;
        bool excludes;
        std::wstring exclusions;
        payload handed_back;
    };
    const std::vector<row> table{
        {sinc_payload(44100, 2), L"44100", 2, false, L"", sinc_payload(44100, 2)},
        {sinc_payload(96000, 4, true, "8000;11025"), L"96000", 4, true, L"8000;11025",
         sinc_payload(96000, 4, true, "8000;11025")},
        {sinc_payload(12345, 0, false, "8000"), L"12345", 0, false, L"8000", sinc_payload(12345, 0, false, "8000")},
        {sinc_payload(7, 9), L"7", 2, false, L"", sinc_payload(7, 9)}, // no control can show them, and they stay
        {{1, 0, 0, 0, 0, 0x77, 1, 0}, L"96000", 4, false, L"", sinc_payload(96000, 4)}, // the older form
        {{0, 0x77, 1}, L"44100", 2, false, L"", sinc_payload(44100, 2)},                // cut short
    };
    for (const row& line : table) {
        const auto reported = show(preset_of(line.stored), [&](HWND dialog) {
            EXPECT_EQ(text_in(dialog, SINC_RATE), line.rate);
            EXPECT_EQ(SendMessageW(control_of(dialog, SINC_QUALITY), CB_GETCURSEL, 0, 0),
                      static_cast<LRESULT>(line.quality));
            EXPECT_EQ(text_in(dialog, SINC_DESCRIPTION), descriptions[line.quality]);
            EXPECT_EQ(is_excluding(dialog), line.excludes);
            EXPECT_EQ(can_type_exclusions(dialog), line.excludes);
            EXPECT_EQ(text_in(dialog, SINC_EXCLUSIONS), line.exclusions);
            press_ok(dialog);
        });
        ASSERT_EQ(reported.size(), 1U);
        EXPECT_EQ(payload_of(reported[0]), line.handed_back) << testing::PrintToString(line.rate);
    }
}

TEST(SincDialog, AForeignPresetOpensWithTheDefaults) {
    host::preset foreign = preset_of(sinc_payload(96000, 4));
    const velmora::guid another{};
    foreign.set_owner(&another);
    const auto reported = show(foreign, press_ok);
    EXPECT_EQ(distinct_payloads(reported), std::vector<payload>{sinc_payload(44100, 2)});
}

TEST(SincDialog, AQualityIsHeardAtOnceAndItsDescriptionFollows) {
    const auto reported = show(preset_of(sinc_payload(48000, 2, false, "8000")), [](HWND dialog) {
        const HWND list = control_of(dialog, SINC_QUALITY);
        press_key(list, VK_DOWN);
        EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_DESCRIPTION) == descriptions[3]; }));
        press_key(list, VK_DOWN);
        EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_DESCRIPTION) == descriptions[4]; }));
        press_key(list, VK_HOME);
        EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_DESCRIPTION) == descriptions[0]; }));
        press_ok(dialog);
    });
    EXPECT_EQ(distinct_payloads(reported),
              (std::vector<payload>{sinc_payload(48000, 3, false, "8000"), sinc_payload(48000, 4, false, "8000"),
                                    sinc_payload(48000, 0, false, "8000")}));
}

TEST(SincDialog, AChosenRateIsTheNewOneAndNotTheOneBefore) {
    std::vector<payload> chosen;
    const auto reported = show(preset_of(sinc_payload(44100, 2)), [&](HWND dialog) {
        for (int key = 0; key < 3; ++key) {
            const std::wstring before = text_in(dialog, SINC_RATE);
            press_key(typing_field(control_of(dialog, SINC_RATE)), VK_DOWN);
            EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_RATE) != before; }));
            chosen.push_back(sinc_payload(static_cast<std::uint32_t>(std::stoul(text_in(dialog, SINC_RATE))), 2));
        }
        press_ok(dialog);
    });
    EXPECT_EQ(distinct_payloads(reported), chosen);
}

TEST(SincDialog, ATypedRateIsHeardAtEachKeyWithinTheLimits) {
    const auto reported = show(preset_of(sinc_payload(44100, 2)), [](HWND dialog) {
        const HWND field = typing_field(control_of(dialog, SINC_RATE));
        select_all(field);
        type(field, "50000000"); // the eighth is one too many
        EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_RATE) == L"5000000"; }));
        press_ok(dialog);
    });
    std::vector<payload> expected;
    for (const std::uint32_t rate_hz : {1000U, 5000U, 50000U, 500000U, 5000000U}) { // 5, 50, 500 and so on
        expected.push_back(sinc_payload(rate_hz, 2));
    }
    EXPECT_EQ(distinct_payloads(reported), expected);
}

TEST(SincDialog, TheExclusionsCanBeTypedWhileTheBoxIsChecked) {
    const auto reported = show(preset_of(sinc_payload(44100, 2)), [](HWND dialog) {
        press_button(dialog, SINC_EXCLUDE);
        EXPECT_TRUE(wait_until([&] { return can_type_exclusions(dialog); }));
        type(control_of(dialog, SINC_EXCLUSIONS), "8;9");
        EXPECT_TRUE(wait_until([&] { return text_in(dialog, SINC_EXCLUSIONS) == L"8;9"; }));
        press_button(dialog, SINC_EXCLUDE);
        EXPECT_TRUE(wait_until([&] { return !can_type_exclusions(dialog); }));
        press_ok(dialog);
    });
    EXPECT_EQ(distinct_payloads(reported),
              (std::vector<payload>{sinc_payload(44100, 2, true, ""), sinc_payload(44100, 2, true, "8"),
                                    sinc_payload(44100, 2, true, "8;"), sinc_payload(44100, 2, true, "8;9"),
                                    sinc_payload(44100, 2, false, "8;9")}));
}

TEST(SincDialog, CancelEscapeAndTheCloseBoxHandTheOpeningPresetBack) {
    const std::function<void(HWND)> endings[] = {
        [](HWND dialog) { press_button(dialog, IDCANCEL); },
        [](HWND dialog) { press_key(control_of(dialog, SINC_QUALITY), VK_ESCAPE); },
        [](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
    };
    const payload older_form{1, 0, 0, 0, 0, 0x77, 1, 0}; // byte for byte
    for (const auto& ending : endings) {
        const auto reported = show(preset_of(older_form), [&](HWND dialog) {
            press_button(dialog, SINC_EXCLUDE);
            EXPECT_TRUE(wait_until([&] { return can_type_exclusions(dialog); }));
            ending(dialog);
        });
        EXPECT_EQ(distinct_payloads(reported), (std::vector<payload>{sinc_payload(96000, 4, true, ""), older_form}));
    }
}

TEST(SincDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        payload opening;
        std::function<void(HWND)> acts;
        bool is_changed;
        payload left;
    };
    const auto change_and = [](int button) {
        return [button](HWND dialog) {
            press_button(dialog, SINC_EXCLUDE);
            EXPECT_TRUE(wait_until([&] { return can_type_exclusions(dialog); }));
            press_button(dialog, button);
        };
    };
    const payload stored = sinc_payload(48000, 3);
    const std::vector<row> table{
        {stored, press_ok, false, stored},
        {stored, change_and(IDOK), true, sinc_payload(48000, 3, true, "")},
        {stored, change_and(IDCANCEL), false, stored},
        {{1, 0, 0, 0, 0, 0x77, 1, 0}, press_ok, true, sinc_payload(96000, 4)}, // now in the whole form
    };
    for (const row& line : table) {
        host::preset edited = preset_of(line.opening);
        bool is_changed = false;
        {
            const person user(line.acts);
            is_changed = built_effects().find(resampler_name).factory->edit_settings(&edited, nullptr);
        }
        EXPECT_EQ(is_changed, line.is_changed);
        EXPECT_EQ(payload_of(edited), line.left);
    }
}

} // namespace
