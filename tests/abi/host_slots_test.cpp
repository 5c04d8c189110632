#include "tests/abi/hand_made_audio.h"
#include "tests/abi/hand_made_values.h"
#include "tests/abi/module_under_test.h"
#include "tests/abi/slots.h"

#include <gmock/gmock.h>

#include <exception>

namespace abi_test {
namespace {

constexpr auto crossfeed = "{D487D723-FD8C-4106-9023-5620AEA0A885}";
constexpr auto resampler = "{421C3E6E-F642-465D-8DBD-DEE5287561D6}";

/// The module keeps the host's object from `enter` to the end of the test.
class HostSlots : public testing::Test {
protected:
    void TearDown() override {
        enter(false);
        module_export()(nullptr);
    }

    void enter(bool checks_threads) {
        void* const module = module_export()(&host_);
        call<void>(module, module_slot::enable_thread_checks, checks_threads);
    }

    hand_made_host host_;
};

/// Asks for the crossfeed's dialog.
void ask_for_dialog(void* factory) {
    hand_made_preset preset;
    call<void>(factory, factory_slot::get_default_preset, &preset);
    hand_made_service callback; // is never called: any object will do
    call<void>(factory, factory_slot::show_settings_dialog, &preset, static_cast<void*>(nullptr), &callback);
}

#ifndef _WIN32 // where a dialog would open and wait
TEST_F(HostSlots, OnlyWhenThreadsAreCheckedTheHostIsAskedForItsMainThread) {
    void* const factory = factory_of(crossfeed); // looking for it enters the module without a host
    for (const bool checks : {false, true, false}) {
        host_.questions = 0;
        enter(checks);
        EXPECT_THROW(ask_for_dialog(factory), std::exception); // there are no dialogs
        EXPECT_EQ(host_.questions, checks ? 1U : 0U);
    }
}
#endif

using HostSlotsDeathTest = HostSlots;

TEST_F(HostSlotsDeathTest, ADialogOnAnotherThreadStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    void* const factory = factory_of(crossfeed);
    host_.is_main_thread = false;
    enter(true);
    EXPECT_DEATH(ask_for_dialog(factory), "VELMORA_BugCheck: core_api::ensure_main_thread");
}

TEST_F(HostSlots, ANoticeIsPrintedOnTheHostsConsole) {
    hand_made_preset preset;
    preset.owner = guid(resampler);
    // To 48000 Hz, at the lowest quality, leaving the rates in a text of five characters alone.
    preset.payload = {0x80, 0xBB, 0, 0, 0, 0, 0, 0, 1, 5, 0, 0, 0, '4', '4', '1', '0', '0'};
    void* instance = nullptr;
    ASSERT_TRUE(call<bool>(factory_of(resampler), factory_slot::instantiate, &instance, &preset));
    enter(false);
    hand_made_block block(44'100, {0.5});
    hand_made_list list({&block});
    call<void>(instance, instance_slot::run, &list, static_cast<void*>(nullptr), std::uint32_t{0});
    EXPECT_THAT(host_.console, testing::ElementsAre("Resampler (RetroArch): 44100 Hz sample rate is excluded"));
    EXPECT_EQ(call<std::uint32_t>(instance, service_slot::release), 0U);
}

} // namespace
} // namespace abi_test
