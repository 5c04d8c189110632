#include "host/objects/api.h"
#include "resources/control_ids.h"
#include "tests/dialogs/effect_dialog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
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

/// Its every report fails.
class failing_callback final : public velmora::preset_change_callback {
public:
    void on_preset_change(const velmora::effect_preset*) override { throw std::runtime_error("no room"); }
};

std::string failure_of(const char* effect, const std::function<void(HWND)>& acts) {
    failing_callback callback;
    const host::preset opening = preset_of(effect, 1000);
    const person user(acts);
    try {
        factory_of(effect)->show_settings_dialog(&opening, nullptr, &callback);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "none";
}

TEST(Dialogs, AnExceptionOfTheCallbackClosesTheDialogAndComesOutBehindIt) {
    EXPECT_EQ(failure_of(crossfeed, [](HWND dialog) { press_key(GetDlgItem(dialog, CROSSFEED_STRENGTH), VK_RIGHT); }),
              "no room");
    EXPECT_EQ(failure_of(fft_resampler, press_ok), "no room");
    EXPECT_EQ(failure_of(fft_resampler, press_cancel), "none");
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
