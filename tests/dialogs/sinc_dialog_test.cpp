#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"
#include "tests/module/sinc_preset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace testing_support;
using payload = std::vector<std::uint8_t>;

host::preset preset_of(const payload& bytes) {
    return testing_support::preset_of(sinc_name, bytes.data(), bytes.size());
}

/// The payloads that the dialog reports.
std::vector<payload> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    std::vector<payload> payloads;
    for (const host::preset& live : show_dialog(sinc_name, opening, acts)) {
        EXPECT_EQ(live.owner(), built_effects().find(sinc_name).identity);
        payloads.push_back(bytes_of(live));
    }
    return payloads;
}

std::vector<payload> show(const payload& opening, const std::function<void(HWND)>& acts) {
    return show(preset_of(opening), acts);
}

/// Clicks on the box of exclusions, then ends the dialog.
std::function<void(HWND)> exclude_and(const std::function<void(HWND)>& ending) {
    return [ending](HWND dialog) {
        press_button(dialog, RESAMPLER_EXCLUDE);
        EXPECT_TRUE(wait_until([&] { return is_enabled(dialog, RESAMPLER_EXCLUSIONS); }));
        ending(dialog);
    };
}

HWND rate_field(HWND dialog) {
    return typing_field(GetDlgItem(dialog, RESAMPLER_RATE));
}

const std::wstring descriptions[] = {
    L"Fastest sinc interpolation, SNR about 40 dB", L"Faster sinc interpolation, SNR about 55 dB",
    L"Fast sinc interpolation, SNR about 70 dB", L"Higher quality sinc interpolation, SNR about 110 dB",
    L"Highest quality sinc interpolation, SNR about 140 dB"};

const payload older_form{1, 0, 0, 0, 0, 0x77, 1, 0}; // high quality, 96000 Hz

TEST(SincDialog, HasItsTextsAndLists) {
    std::wstring title;
    std::vector<std::wstring> texts;
    std::vector<std::wstring> rates;
    std::vector<std::wstring> qualities;
    show(sinc_payload(44100, 2), [&](HWND dialog) {
        title = text_of(dialog);
        texts = texts_in(dialog);
        rates = choices_in(dialog, RESAMPLER_RATE);
        qualities = choices_in(dialog, SINC_QUALITY);
        press_ok(dialog);
    });
    EXPECT_EQ(title, L"RetroArch resampler configuration");
    for (const auto* const text : {L"Target sample rate:", L"Quality:", L"Exclude rates:", L"OK", L"Cancel"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(rates, (std::vector<std::wstring>{L"8000", L"11025", L"16000", L"22050", L"24000", L"32000", L"44100",
                                                L"48000", L"64000", L"88200", L"96000"}));
    EXPECT_EQ(qualities, (std::vector<std::wstring>{L"Lowest", L"Lower", L"Normal", L"Higher", L"Highest"}));
}

int width_in(HWND control, const std::wstring& text) {
    const HDC paper = GetDC(control);
    const HGDIOBJ before = SelectObject(paper, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(paper, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(paper, before);
    ReleaseDC(control, paper);
    return size.cx;
}

TEST(SincDialog, DescriptionsHaveRoomInAWiderFontToo) {
    show(sinc_payload(44100, 2), [&](HWND dialog) {
        const HWND control = GetDlgItem(dialog, SINC_DESCRIPTION);
        RECT room{};
        GetClientRect(control, &room);
        for (const std::wstring& description : descriptions) {
            EXPECT_LE(width_in(control, description) * 1.1, room.right) << testing::PrintToString(description);
        }
        press_ok(dialog);
    });
}

TEST(SincDialog, ShowsTheStoredSettingsAndOkHandsThemBackUnchanged) {
    struct row {
        payload stored;
        std::wstring rate;
        LRESULT selected_rate;
        std::size_t quality;
        bool excludes;
        std::wstring exclusions;
        payload handed_back;
    };
    const std::vector<row> table{
        {sinc_payload(44100, 2), L"44100", 6, 2, false, L"", sinc_payload(44100, 2)},
        {sinc_payload(96000, 4, true, "8000;11025"), L"96000", 10, 4, true, L"8000;11025",
         sinc_payload(96000, 4, true, "8000;11025")},
        {sinc_payload(12345, 0, false, "8000"), L"12345", -1, 0, false, L"8000", sinc_payload(12345, 0, false, "8000")},
        {sinc_payload(7, 9), L"7", -1, 2, false, L"", sinc_payload(7, 9)}, // no control can show them, and they stay
        {older_form, L"96000", 10, 4, false, L"", sinc_payload(96000, 4)},
        {{0, 0x77, 1}, L"44100", 6, 2, false, L"", sinc_payload(44100, 2)}, // cut short
    };
    for (const row& line : table) {
        const auto reported = show(line.stored, [&](HWND dialog) {
            EXPECT_EQ(text_in(dialog, RESAMPLER_RATE), line.rate);
            EXPECT_EQ(selection_of(dialog, RESAMPLER_RATE), line.selected_rate) << testing::PrintToString(line.rate);
            EXPECT_EQ(selection_of(dialog, SINC_QUALITY), static_cast<LRESULT>(line.quality));
            EXPECT_EQ(text_in(dialog, SINC_DESCRIPTION), descriptions[line.quality]);
            EXPECT_EQ(is_checked(dialog, RESAMPLER_EXCLUDE), line.excludes);
            EXPECT_EQ(is_enabled(dialog, RESAMPLER_EXCLUSIONS), line.excludes);
            EXPECT_EQ(text_in(dialog, RESAMPLER_EXCLUSIONS), line.exclusions);
            press_ok(dialog);
        });
        EXPECT_EQ(reported, std::vector<payload>{line.handed_back}) << testing::PrintToString(line.rate);
    }
}

TEST(SincDialog, AForeignPresetOpensWithTheDefaults) {
    const auto reported = show(made_foreign(preset_of(sinc_payload(96000, 4))), press_ok);
    EXPECT_EQ(reported, std::vector<payload>{sinc_payload(44100, 2)});
}

TEST(SincDialog, AQualityIsHeardAtOnceAndItsDescriptionFollows) {
    const auto reported = show(sinc_payload(48000, 2, false, "8000"), [](HWND dialog) {
        const HWND list = GetDlgItem(dialog, SINC_QUALITY);
        press_key(list, VK_DOWN);
        EXPECT_TRUE(shows(dialog, SINC_DESCRIPTION, descriptions[3]));
        press_key(list, VK_DOWN);
        EXPECT_TRUE(shows(dialog, SINC_DESCRIPTION, descriptions[4]));
        press_key(list, VK_HOME);
        EXPECT_TRUE(shows(dialog, SINC_DESCRIPTION, descriptions[0]));
        press_ok(dialog);
    });
    EXPECT_EQ(reported,
              (std::vector<payload>{sinc_payload(48000, 3, false, "8000"), sinc_payload(48000, 4, false, "8000"),
                                    sinc_payload(48000, 0, false, "8000"), sinc_payload(48000, 0, false, "8000")}));
}

TEST(SincDialog, TheKeysStepThroughTheRatesFromTheOneShown) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        press_key(rate_field(dialog), VK_DOWN);
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48000"));
        press_key(rate_field(dialog), VK_DOWN);
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"64000"));
        press_key(rate_field(dialog), VK_UP);
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48000"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (std::vector<payload>{sinc_payload(48000, 2), sinc_payload(64000, 2), sinc_payload(48000, 2),
                                              sinc_payload(48000, 2)}));
}

TEST(SincDialog, ATypedRateIsHeardAtEachKeyWithinTheLimits) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        select_all(rate_field(dialog));
        type(rate_field(dialog), L"5000000");
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"5000000"));
        press_ok(dialog);
    });
    std::vector<payload> expected;
    for (const std::uint32_t rate_hz : {1000U, 1000U, 1000U, 5000U, 50000U, 500000U, 5000000U}) { // 5, 50, and so on
        expected.push_back(sinc_payload(rate_hz, 2));
    }
    expected.push_back(expected.back()); // OK
    EXPECT_EQ(reported, expected);
}

TEST(SincDialog, TheEighthLetterOfARateIsRefused) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        select_all(rate_field(dialog));
        type(rate_field(dialog), L"20000000");
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"2000000"));
        press_ok(dialog);
    });
    ASSERT_FALSE(reported.empty());
    EXPECT_EQ(reported.back(), sinc_payload(2'000'000, 2));
}

/// Types 48 over the rate and opens the list, which completes it.
void have_48_completed(HWND dialog) {
    select_all(rate_field(dialog));
    type(rate_field(dialog), L"48");
    EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48"));
    press_key(rate_field(dialog), VK_F4);
    EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48000"));
}

TEST(SincDialog, ARateThatTheListCompletesIsHeardWhenItCloses) {
    for (const int closing_key : {VK_F4, VK_ESCAPE, VK_RETURN, VK_TAB}) {
        const auto reported = show(sinc_payload(44100, 2), [&](HWND dialog) {
            have_48_completed(dialog);
            press_key(rate_field(dialog), closing_key);
            EXPECT_TRUE(wait_until([&] { return !is_dropped_down(dialog, RESAMPLER_RATE); })) << closing_key;
            press_ok(dialog);
        });
        EXPECT_EQ(reported, (std::vector<payload>{sinc_payload(1000, 2), sinc_payload(1000, 2), // 4, 48
                                                  sinc_payload(48000, 2), sinc_payload(48000, 2)}))
            << closing_key;
    }
}

TEST(SincDialog, ARateThatTheListCompletesCountsWhileTheListIsOpen) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        have_48_completed(dialog);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0); // no click, which would close the list
    });
    EXPECT_EQ(reported, (std::vector<payload>{sinc_payload(1000, 2), sinc_payload(1000, 2), sinc_payload(48000, 2)}));
}

TEST(SincDialog, AListThatClosesWithACancelledDialogIsNotHeard) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        have_48_completed(dialog);
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(reported, (std::vector<payload>{sinc_payload(1000, 2), sinc_payload(1000, 2), sinc_payload(44100, 2)}));
}

TEST(SincDialog, WhatIsTypedIntoAnOpenListCountsAndNotTheNearestRate) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        press_key(rate_field(dialog), VK_F4);
        select_all(rate_field(dialog));
        type(rate_field(dialog), L"8820");
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"8820"));
        EXPECT_TRUE(wait_until([&] { return selection_of(dialog, RESAMPLER_RATE) == 9; })); // 88200
        press_ok(dialog);
    });
    EXPECT_EQ(reported, (std::vector<payload>{sinc_payload(1000, 2), sinc_payload(1000, 2), sinc_payload(1000, 2),
                                              sinc_payload(8820, 2), sinc_payload(8820, 2)}));
}

TEST(SincDialog, OpeningAndClosingAListChangesNothing) {
    const payload beyond_the_controls = sinc_payload(7, 9);
    for (const int list : {RESAMPLER_RATE, SINC_QUALITY}) {
        const auto reported = show(beyond_the_controls, [&](HWND dialog) {
            for (const int is_open : {1, 0}) {
                SendMessageW(GetDlgItem(dialog, list), CB_SHOWDROPDOWN, static_cast<WPARAM>(is_open), 0);
            }
            press_ok(dialog);
        });
        EXPECT_EQ(reported, std::vector<payload>{beyond_the_controls}) << list;
    }
}

TEST(SincDialog, TheExclusionsCanBeTypedWhileTheBoxIsChecked) {
    const auto reported = show(sinc_payload(44100, 2), [](HWND dialog) {
        press_button(dialog, RESAMPLER_EXCLUDE);
        EXPECT_TRUE(wait_until([&] { return is_enabled(dialog, RESAMPLER_EXCLUSIONS); }));
        type(GetDlgItem(dialog, RESAMPLER_EXCLUSIONS), L"8;9");
        EXPECT_TRUE(shows(dialog, RESAMPLER_EXCLUSIONS, L"8;9"));
        press_button(dialog, RESAMPLER_EXCLUDE);
        EXPECT_TRUE(wait_until([&] { return !is_enabled(dialog, RESAMPLER_EXCLUSIONS); }));
        press_ok(dialog);
    });
    EXPECT_EQ(reported,
              (std::vector<payload>{sinc_payload(44100, 2, true, ""), sinc_payload(44100, 2, true, "8"),
                                    sinc_payload(44100, 2, true, "8;"), sinc_payload(44100, 2, true, "8;9"),
                                    sinc_payload(44100, 2, false, "8;9"), sinc_payload(44100, 2, false, "8;9")}));
}

TEST(SincDialog, CancelEscapeAndTheCloseBoxHandTheOpeningPresetBackOnce) {
    for (const auto& ending : {press_cancel, press_escape, press_close_box}) {
        EXPECT_EQ(show(older_form, exclude_and(ending)),
                  (std::vector<payload>{sinc_payload(96000, 4, true, ""), older_form})); // byte for byte
    }
}

TEST(SincDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        payload opening;
        std::function<void(HWND)> acts;
        bool is_changed;
        payload left;
    };
    const payload stored = sinc_payload(48000, 3);
    const std::vector<row> table{
        {stored, press_ok, false, stored},
        {stored, exclude_and(press_ok), true, sinc_payload(48000, 3, true, "")},
        {stored, exclude_and(press_cancel), false, stored},
        {older_form, press_ok, true, sinc_payload(96000, 4)}, // now in the whole form
    };
    for (const row& line : table) {
        host::preset edited = preset_of(line.opening);
        EXPECT_EQ(edit_by_dialog(sinc_name, edited, line.acts), line.is_changed);
        EXPECT_EQ(bytes_of(edited), line.left);
    }
}

} // namespace
