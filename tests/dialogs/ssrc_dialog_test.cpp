#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"
#include "tests/module/ssrc_preset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace testing_support;
using payload = std::vector<std::uint8_t>;

host::preset preset_of(const payload& bytes) {
    return testing_support::preset_of(ssrc_name, bytes.data(), bytes.size());
}

/// The payloads that the dialog reports.
std::vector<payload> show(const host::preset& opening, const std::function<void(HWND)>& acts) {
    std::vector<payload> payloads;
    for (const host::preset& reported : show_dialog(ssrc_name, opening, acts)) {
        EXPECT_EQ(reported.owner(), built_effects().find(ssrc_name).identity);
        payloads.push_back(bytes_of(reported));
    }
    return payloads;
}

std::vector<payload> show(const payload& opening, const std::function<void(HWND)>& acts) {
    return show(preset_of(opening), acts);
}

HWND rate_field(HWND dialog) {
    return typing_field(GetDlgItem(dialog, RESAMPLER_RATE));
}

void type_rate(HWND dialog, const std::wstring& rate) {
    select_all(rate_field(dialog));
    type(rate_field(dialog), rate);
    EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, rate));
}

void click_exclude(HWND dialog) {
    const bool was_enabled = is_enabled(dialog, RESAMPLER_EXCLUSIONS);
    press_button(dialog, RESAMPLER_EXCLUDE);
    EXPECT_TRUE(wait_until([&] { return is_enabled(dialog, RESAMPLER_EXCLUSIONS) != was_enabled; }));
}

/// Changes the rate, the box and the text, then ends the dialog.
std::function<void(HWND)> edit_and(const std::function<void(HWND)>& ending) {
    return [ending](HWND dialog) {
        type_rate(dialog, L"192000");
        click_exclude(dialog);
        type(GetDlgItem(dialog, RESAMPLER_EXCLUSIONS), L"8000");
        EXPECT_TRUE(shows(dialog, RESAMPLER_EXCLUSIONS, L"8000"));
        ending(dialog);
    };
}

TEST(SsrcDialog, HasItsTextsAndItsRates) {
    std::wstring title;
    std::vector<std::wstring> texts;
    std::vector<std::wstring> rates;
    show(ssrc_payload(44100), [&](HWND dialog) {
        title = text_of(dialog);
        texts = texts_in(dialog);
        rates = choices_in(dialog, RESAMPLER_RATE);
        press_cancel(dialog);
    });
    EXPECT_EQ(title, L"Resampler Settings");
    for (const auto* const text : {L"Target sampling rate:", L"Exclude rates:", L"OK", L"Cancel"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(rates, (std::vector<std::wstring>{L"8000", L"11025", L"16000", L"22050", L"24000", L"32000", L"44100",
                                                L"48000", L"64000", L"88200", L"96000"}));
}

TEST(SsrcDialog, ShowsTheStoredSettingsAndOkReportsWhatItShowsOnce) {
    struct row {
        const char* what;
        host::preset opening;
        std::wstring rate;
        LRESULT selected_rate;
        bool excludes;
        std::wstring exclusions;
        payload reported;
    };
    const payload whole = ssrc_payload(96000, true, "8000;11025");
    const auto cut_to = [&](std::ptrdiff_t bytes) { return preset_of(payload(whole.begin(), whole.begin() + bytes)); };
    const std::vector<row> table{
        {"a rate of the list", preset_of(whole), L"96000", 10, true, L"8000;11025", whole},
        {"a rate that is not", preset_of(ssrc_payload(12345, false, "8000")), L"12345", -1, false, L"8000",
         ssrc_payload(12345, false, "8000")},
        {"text beyond ASCII", preset_of(ssrc_payload(48000, true, "8000 d\xC3\xA9j\xC3\xA0 \xE2\x99\xAB")), L"48000", 7,
         true, L"8000 d\xE9j\xE0 \x266B", ssrc_payload(48000, true, "8000 d\xC3\xA9j\xC3\xA0 \xE2\x99\xAB")},
        {"above the dialog's limit", preset_of(ssrc_payload(20'000'000)), L"20000000", -1, false, L"",
         ssrc_payload(384'000)},
        {"cut in the rate", cut_to(3), L"44100", 6, false, L"", ssrc_payload(44100)},
        {"the rate alone", cut_to(4), L"96000", 10, false, L"", ssrc_payload(96000)},
        {"cut in the text", cut_to(15), L"96000", 10, true, L"", ssrc_payload(96000, true)},
        {"a rate out of range", preset_of(ssrc_payload(999, true, "8000")), L"44100", 6, false, L"",
         ssrc_payload(44100)},
        {"somebody else's", made_foreign(preset_of(whole)), L"44100", 6, false, L"", ssrc_payload(44100)},
    };
    for (const row& line : table) {
        const auto reported = show(line.opening, [&](HWND dialog) {
            EXPECT_EQ(text_in(dialog, RESAMPLER_RATE), line.rate) << line.what;
            EXPECT_EQ(selection_of(dialog, RESAMPLER_RATE), line.selected_rate) << line.what;
            EXPECT_EQ(is_checked(dialog, RESAMPLER_EXCLUDE), line.excludes) << line.what;
            EXPECT_EQ(is_enabled(dialog, RESAMPLER_EXCLUSIONS), line.excludes) << line.what;
            EXPECT_EQ(text_in(dialog, RESAMPLER_EXCLUSIONS), line.exclusions) << line.what;
            press_ok(dialog);
        });
        EXPECT_EQ(reported, std::vector<payload>{line.reported}) << line.what;
    }
}

TEST(SsrcDialog, ATypedRateIsBroughtWithinTheLimits) {
    struct row {
        std::wstring typed;
        std::uint32_t rate_hz;
    };
    for (const row& line : {row{L"500", 1000}, row{L"400000", 384'000}, row{L"192000", 192'000}, row{L"abc", 1000},
                            row{L"99999999999999", 384'000}}) {
        const auto reported = show(ssrc_payload(44100), [&](HWND dialog) {
            type_rate(dialog, line.typed);
            press_ok(dialog);
        });
        EXPECT_EQ(reported, std::vector<payload>{ssrc_payload(line.rate_hz)}) << testing::PrintToString(line.typed);
    }
}

TEST(SsrcDialog, TheKeysStepThroughTheRatesFromTheOneShown) {
    const auto reported = show(ssrc_payload(44100), [](HWND dialog) {
        press_key(rate_field(dialog), VK_DOWN);
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48000"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, std::vector<payload>{ssrc_payload(48000)});
}

TEST(SsrcDialog, ARateThatTheListCompletesCounts) {
    const auto reported = show(ssrc_payload(44100), [](HWND dialog) {
        type_rate(dialog, L"48");
        press_key(rate_field(dialog), VK_F4);
        EXPECT_TRUE(shows(dialog, RESAMPLER_RATE, L"48000"));
        press_ok(dialog);
    });
    EXPECT_EQ(reported, std::vector<payload>{ssrc_payload(48000)});
}

TEST(SsrcDialog, WhatIsTypedIntoAnOpenListCountsAndNotTheNearestRate) {
    const auto reported = show(ssrc_payload(44100), [](HWND dialog) {
        press_key(rate_field(dialog), VK_F4);
        type_rate(dialog, L"8820");
        EXPECT_TRUE(wait_until([&] { return selection_of(dialog, RESAMPLER_RATE) == 9; })); // 88200
        press_ok(dialog);
    });
    EXPECT_EQ(reported, std::vector<payload>{ssrc_payload(8820)});
}

TEST(SsrcDialog, TheExclusionsCanBeTypedWhileTheBoxIsCheckedAndStayWhenItIsNot) {
    const auto type_exclusions = [](HWND dialog) {
        click_exclude(dialog);
        type(GetDlgItem(dialog, RESAMPLER_EXCLUSIONS), L"8000 \xE9");
        EXPECT_TRUE(shows(dialog, RESAMPLER_EXCLUSIONS, L"8000 \xE9"));
    };
    EXPECT_EQ(show(ssrc_payload(44100),
                   [&](HWND dialog) {
                       type_exclusions(dialog);
                       press_ok(dialog);
                   }),
              std::vector<payload>{ssrc_payload(44100, true, "8000 \xC3\xA9")});
    EXPECT_EQ(show(ssrc_payload(44100),
                   [&](HWND dialog) {
                       type_exclusions(dialog);
                       click_exclude(dialog);
                       EXPECT_EQ(text_in(dialog, RESAMPLER_EXCLUSIONS), L"8000 \xE9");
                       press_ok(dialog);
                   }),
              std::vector<payload>{ssrc_payload(44100, false, "8000 \xC3\xA9")});
}

TEST(SsrcDialog, EnterIsOk) {
    const auto reported =
        show(ssrc_payload(44100), edit_and([](HWND dialog) { press_key(rate_field(dialog), VK_RETURN); }));
    EXPECT_EQ(reported, std::vector<payload>{ssrc_payload(192'000, true, "8000")});
}

TEST(SsrcDialog, NothingIsReportedBeforeTheEnd) {
    reported_presets callback;
    const host::preset opening = preset_of(ssrc_payload(44100));
    std::size_t reports_before_ok = 99;
    {
        const person user(edit_and([&](HWND dialog) {
            reports_before_ok = callback.presets().size();
            press_ok(dialog);
        }));
        host::query_as<velmora::effect_factory_with_dialog>(*built_effects().find(ssrc_name).factory)
            ->show_settings_dialog(&opening, nullptr, &callback);
    }
    EXPECT_EQ(reports_before_ok, 0U);
    ASSERT_EQ(callback.presets().size(), 1U);
    EXPECT_EQ(bytes_of(callback.presets()[0]), ssrc_payload(192'000, true, "8000"));
}

TEST(SsrcDialog, CancelEscapeAndTheCloseBoxReportNothing) {
    for (const auto& ending : {press_cancel, press_escape, press_close_box}) {
        EXPECT_EQ(show(ssrc_payload(44100), edit_and(ending)), std::vector<payload>{});
    }
}

TEST(SsrcDialog, EditingAnswersWhetherAnythingChanged) {
    struct row {
        const char* what;
        payload opening;
        std::function<void(HWND)> acts;
        bool is_changed;
        payload left;
    };
    const payload short_form{0x80, 0xBB, 0, 0}; // 48000 Hz, and nothing behind it
    const std::vector<row> table{
        {"OK at once", ssrc_payload(48000), press_ok, false, ssrc_payload(48000)},
        {"edited, then OK", ssrc_payload(48000), edit_and(press_ok), true, ssrc_payload(192'000, true, "8000")},
        {"edited, then Cancel", short_form, edit_and(press_cancel), false, short_form},
        {"edited, then Escape", short_form, edit_and(press_escape), false, short_form},
        {"edited, then closed", short_form, edit_and(press_close_box), false, short_form},
        {"OK above the limit", ssrc_payload(400'000), press_ok, true, ssrc_payload(384'000)},
        {"Cancel above the limit", ssrc_payload(400'000), press_cancel, false, ssrc_payload(400'000)},
        {"OK in the short form", short_form, press_ok, true, ssrc_payload(48000)},
    };
    for (const row& line : table) {
        host::preset edited = preset_of(line.opening);
        EXPECT_EQ(edit_by_dialog(ssrc_name, edited, line.acts), line.is_changed) << line.what;
        EXPECT_EQ(bytes_of(edited), line.left) << line.what;
    }
}

} // namespace
