#include "host/objects/api.h"
#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"
#include "tests/support/failing_preset.h"
#include "tests/support/thrown_text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace testing_support;

constexpr auto crossfeed = "Meier Crossfeed";
constexpr auto fft_resampler = "Resampler (dBpoweramp/SSRC)";

/// A preset of an effect whose payload may be, or begins with, one number.
host::preset preset_of(const char* effect, std::int32_t number) {
    return testing_support::preset_of(effect, &number, sizeof number);
}

/// The numbers that the payloads begin with.
std::vector<std::int32_t> numbers_of(const std::vector<host::preset>& presets) {
    std::vector<std::int32_t> numbers;
    for (const host::preset& preset : presets) {
        EXPECT_GE(preset.payload().size(), sizeof(std::int32_t));
        std::memcpy(&numbers.emplace_back(0), preset.payload().data(), sizeof(std::int32_t));
    }
    return numbers;
}

host::service_ptr<velmora::effect_factory_with_dialog> factory_of(const char* effect) {
    return host::query_as<velmora::effect_factory_with_dialog>(*built_effects().find(effect).factory);
}

TEST(Dialogs, SomeOnAsManyThreadsAtOnceDoNotMix) {
    struct row {
        const char* effect;
        std::int32_t stored;
        int control;
        std::wstring shown;
    };
    const row table[] = {{crossfeed, 3000, CROSSFEED_NUMBER, L"30"},
                         {crossfeed, 7000, CROSSFEED_NUMBER, L"70"},
                         {fft_resampler, 96000, RESAMPLER_RATE, L"96000"},
                         {fft_resampler, 12345, RESAMPLER_RATE, L"12345"}};
    built_effects(); // made by one thread
    std::atomic<std::size_t> open = 0;
    const auto show_and_look = [&](const row& line) {
        const auto reported = show_dialog(line.effect, preset_of(line.effect, line.stored), [&](HWND dialog) {
            ++open;
            EXPECT_TRUE(wait_until([&] { return open == std::size(table); })); // all are there before any is read
            EXPECT_EQ(text_in(dialog, line.control), line.shown) << line.effect;
            press_ok(dialog);
        });
        EXPECT_EQ(reported.size(), 1U) << line.effect;
    };
    std::vector<std::thread> threads;
    for (const row& line : table) {
        threads.emplace_back(show_and_look, std::cref(line));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// Sees each preset, and fails at so many of them, the first ones; says at which.
class failing_callback final : public velmora::preset_change_callback {
public:
    explicit failing_callback(std::size_t failures) : failures_(failures) {}

    void on_preset_change(const velmora::effect_preset* reported) override {
        seen_.on_preset_change(reported);
        if (presets().size() <= failures_) {
            throw std::runtime_error("failure " + std::to_string(presets().size()));
        }
    }

    const std::vector<host::preset>& presets() const noexcept { return seen_.presets(); }

private:
    std::size_t failures_;
    reported_presets seen_;
};

void press_right(HWND dialog) {
    press_key(GetDlgItem(dialog, CROSSFEED_STRENGTH), VK_RIGHT);
}

TEST(Dialogs, AnExceptionOfTheCallbackClosesTheDialogAndComesOutBehindIt) {
    struct row {
        const char* what;
        const char* effect;
        std::size_t failures;
        std::function<void(HWND)> acts;
        std::string said;
        std::vector<std::int32_t> seen; ///< the numbers in front of the payloads
    };
    const row table[] = {
        {"a move, then the opening preset", crossfeed, 1, press_right, "failure 1", {1600, 1550}},
        {"a move, and the opening preset too", crossfeed, 9, press_right, "failure 1", {1600, 1550}},
        {"OK of a live dialog", crossfeed, 9, press_ok, "failure 1", {1550}},
        {"Escape of a live dialog", crossfeed, 9, press_escape, "failure 1", {1550}},
        {"OK", fft_resampler, 9, press_ok, "failure 1", {1550}},
        {"Cancel", fft_resampler, 9, press_cancel, "nothing thrown", {}},
    };
    for (const row& line : table) {
        failing_callback callback(line.failures);
        const host::preset opening = preset_of(line.effect, 1550);
        {
            const person user(line.acts);
            EXPECT_EQ(thrown_text<std::runtime_error>(
                          [&] { factory_of(line.effect)->show_settings_dialog(&opening, nullptr, &callback); }),
                      line.said)
                << line.what;
        }
        EXPECT_EQ(numbers_of(callback.presets()), line.seen) << line.what;
    }
}

/// Keeps what is reported, and replaces the opening preset by it.
class overwriting_callback final : public velmora::preset_change_callback {
public:
    explicit overwriting_callback(host::preset& opening) : opening_(opening) {}

    void on_preset_change(const velmora::effect_preset* reported) override {
        seen_.on_preset_change(reported);
        opening_ = seen_.presets().back();
    }

    const std::vector<host::preset>& presets() const noexcept { return seen_.presets(); }

private:
    host::preset& opening_;
    reported_presets seen_;
};

TEST(Dialogs, EscapeHandsTheOpeningPresetBackAlsoWhenTheCallbackHasOverwrittenIt) {
    host::preset opening = preset_of(crossfeed, 1550);
    overwriting_callback callback(opening);
    {
        const person user([](HWND dialog) {
            press_right(dialog);
            EXPECT_TRUE(shows(dialog, CROSSFEED_NUMBER, L"16"));
            press_escape(dialog);
        });
        factory_of(crossfeed)->show_settings_dialog(&opening, nullptr, &callback);
    }
    const std::vector<std::int32_t> seen = numbers_of(callback.presets());
    ASSERT_GE(seen.size(), 2U); // a key is notified when it goes down, and may be when it comes up
    EXPECT_EQ(seen.front(), 1600);
    EXPECT_EQ(seen.back(), 1550);
}

TEST(Dialogs, OnlyAClickOnAButtonEndsThem) {
    for (const int button : {IDOK, IDCANCEL}) {
        const auto reported = show_dialog(crossfeed, preset_of(crossfeed, 1550), [&](HWND dialog) {
            for (const int notification : {BN_SETFOCUS, BN_KILLFOCUS, BN_DBLCLK}) {
                SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, notification), 0);
                EXPECT_NE(IsWindowVisible(dialog), FALSE) << button << ", " << notification;
            }
            press_ok(dialog);
        });
        EXPECT_EQ(numbers_of(reported), std::vector<std::int32_t>{1550}) << button;
    }
}

/// The procedure of the dialogs' windows.
DLGPROC dialog_procedure() {
    LONG_PTR procedure = 0;
    show_dialog(crossfeed, preset_of(crossfeed, 1550), [&](HWND dialog) {
        procedure = GetWindowLongPtrW(dialog, DWLP_DLGPROC);
        press_ok(dialog);
    });
    return reinterpret_cast<DLGPROC>(procedure);
}

TEST(Dialogs, OneThatCannotBeOpenedIsCancelledAndNoOtherWindowBecomesIt) {
    const DLGPROC procedure = dialog_procedure();
    const auto not_a_window = reinterpret_cast<HWND>(std::uintptr_t{0x1234567});
    const host::preset opening = preset_of(crossfeed, 1550);
    reported_presets callback;
    factory_of(crossfeed)->show_settings_dialog(&opening, not_a_window, &callback);
    EXPECT_EQ(numbers_of(callback.presets()), std::vector<std::int32_t>{1550});

    const HWND other = CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(procedure(other, WM_NULL, 0, 0), FALSE);
    EXPECT_EQ(GetWindowLongPtrW(other, DWLP_USER), 0);
    DestroyWindow(other);
}

TEST(Dialogs, APresetThatCannotBeHadOpensTheFftResamplersWithItsDefaultsAndNoOther) {
    reported_presets callback;
    const failing_preset unreadable(built_effects().find(fft_resampler).identity);
    {
        const person user(press_ok);
        factory_of(fft_resampler)->show_settings_dialog(&unreadable, nullptr, &callback);
    }
    ASSERT_EQ(callback.presets().size(), 1U);
    EXPECT_EQ(callback.presets()[0].payload(), built_effects().find(fft_resampler).default_preset.payload());
    for (const char* const effect : {crossfeed, "Crossfader", "Skip Silence", "Resampler (RetroArch)"}) {
        const failing_preset refused(built_effects().find(effect).identity);
        EXPECT_EQ(thrown_text<std::runtime_error>(
                      [&] { factory_of(effect)->show_settings_dialog(&refused, nullptr, &callback); }),
                  "no payload")
            << effect;
    }
}

void show_on_the_wrong_thread(const char* effect) {
    built_effects(); // loaded without a host, before the host comes that the module is to keep
    host::api api([](std::string_view) {});
    const host::loaded_module module("kelvane.dll", &api);
    module.entry().enable_thread_checks(true);
    std::thread([effect] {
        reported_presets callback;
        const host::preset opening = preset_of(effect, 1000);
        factory_of(effect)->show_settings_dialog(&opening, nullptr, &callback);
    }).join();
}

TEST(DialogsDeathTest, WithThreadChecksOnTheWrongThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(show_on_the_wrong_thread(crossfeed), "VELMORA_BugCheck: core_api::ensure_main_thread");
    EXPECT_DEATH(show_on_the_wrong_thread(fft_resampler), "VELMORA_BugCheck: core_api::ensure_main_thread");
}

} // namespace
