#include "frame/main_thread.h"

#include "frame/bug_check.h"
#include "frame/module_state.h"
#include "frame/service_list.h"
#include "frame/services.h"
#include "velmora/component_version.h"
#include "velmora/file_name_check.h"
#include "velmora/host_api.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

class answering_host final : public velmora::host_api {
public:
    explicit answering_host(bool is_main) : is_main_(is_main) {}
    bool is_main_thread() override { return is_main_; }
    void print_console(const char*, std::size_t) override {}

private:
    bool is_main_;
};

/// What the dialogs of a module in this state would do first.
void check_with(velmora::host_api* host, bool checks_threads) {
    state().host = host;
    state().checks_threads = checks_threads;
    ensure_main_thread();
    state() = module_state();
}

TEST(MainThread, WithoutChecksOrHostAnyThreadWillDo) {
    answering_host elsewhere(false);
    check_with(&elsewhere, false);
    check_with(nullptr, true);
    EXPECT_FALSE(state().checks_threads); // got here, and the checks are off again
}

TEST(MainThread, TheMainThreadPasses) {
    answering_host here(true);
    check_with(&here, true);
    EXPECT_EQ(state().host, nullptr);
}

TEST(MainThreadDeathTest, AnyOtherStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    answering_host elsewhere(false);
    EXPECT_DEATH(check_with(&elsewhere, true), "^VELMORA_BugCheck: core_api::ensure_main_thread\r?\n");
}

/// A service that does not have the interface under which it is registered.
class version_only final : public static_service<velmora::component_version> {
    void get_file_name(velmora::string_receiver*) override {}
    void get_component_name(velmora::string_receiver*) override {}
    void get_version(velmora::string_receiver*) override {}
    void get_about(velmora::string_receiver*) override {}
};

TEST(ServiceRecordDeathTest, AServiceWithoutItsInterfaceStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static service_record<version_only, velmora::file_name_check> misplaced;
    velmora::service* out = nullptr;
    EXPECT_DEATH(misplaced.get_instance(&out), "VELMORA_BugCheck: forced cast failure");
}

TEST(ServiceRecord, LinksItselfAtTheHead) {
    velmora::service_factory* const before = service_list::head();
    static service_record<version_only, velmora::component_version> first;
    static service_record<version_only, velmora::component_version> second;
    EXPECT_EQ(service_list::head(), &second);
    EXPECT_EQ(second.next, &first);
    EXPECT_EQ(first.next, before);
    EXPECT_EQ(*first.class_id, velmora::component_version::class_id);
}

} // namespace
} // namespace kelvane
