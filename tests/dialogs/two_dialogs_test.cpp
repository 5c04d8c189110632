#include "host/objects/api.h"
#include "resources/control_ids.h"
#include "tests/dialogs/person.h"
#include "tests/dialogs/reported_presets.h"
#include "tests/support/built_module.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace testing_support;

host::service_ptr<velmora::effect_factory_with_dialog> factory() {
    return host::query_as<velmora::effect_factory_with_dialog>(*built_effects().find("Meier Crossfeed").factory);
}

host::preset preset_of(std::int32_t strength) {
    host::preset made = built_effects().find("Meier Crossfeed").default_preset;
    made.set_data(&strength, sizeof strength);
    return made;
}

TEST(Dialogs, TwoOnTwoThreadsAtOnceDoNotMix) {
    std::atomic<int> open = 0;
    std::wstring numbers[2];
    const auto show_on_a_thread = [&](std::size_t which, std::int32_t strength) {
        return std::thread([&, which, strength] {
            reported_presets callback;
            const host::preset opening = preset_of(strength);
            const person user([&](HWND dialog) {
                ++open;
                EXPECT_TRUE(wait_until([&] { return open == 2; })); // both are there before either is read
                numbers[which] = text_of(GetDlgItem(dialog, CROSSFEED_NUMBER));
                PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
            });
            factory()->show_settings_dialog(&opening, nullptr, &callback);
            EXPECT_EQ(callback.presets().size(), 1U); // by OK
        });
    };
    std::thread first = show_on_a_thread(0, 3000);
    std::thread second = show_on_a_thread(1, 7000);
    first.join();
    second.join();
    EXPECT_EQ(numbers[0], L"30");
    EXPECT_EQ(numbers[1], L"70");
}

TEST(Dialogs, AnExceptionOfTheCallbackClosesTheDialogAndComesOutBehindIt) {
    class failing_callback final : public velmora::preset_change_callback {
    public:
        void on_preset_change(const velmora::effect_preset*) override { throw std::runtime_error("no room"); }
    };
    failing_callback callback;
    const host::preset opening = preset_of(1000);
    std::string said;
    {
        const person user([](HWND dialog) { press_key(GetDlgItem(dialog, CROSSFEED_STRENGTH), VK_RIGHT); });
        try {
            factory()->show_settings_dialog(&opening, nullptr, &callback);
        } catch (const std::runtime_error& failure) {
            said = failure.what();
        }
    }
    EXPECT_EQ(said, "no room");
}

TEST(DialogsDeathTest, WithThreadChecksOnTheWrongThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            built_effects(); // loaded without a host, before the host comes that
                             // the module is to keep
            host::api api([](std::string_view) {});
            const host::loaded_module module("kelvane.dll", &api);
            module.entry().enable_thread_checks(true);
            std::thread([] {
                reported_presets callback;
                const host::preset opening = preset_of(1000);
                factory()->show_settings_dialog(&opening, nullptr, &callback);
            }).join();
        },
        "VELMORA_BugCheck: core_api::ensure_main_thread");
}

} // namespace
