#include "frame/main_thread.h"

#include "frame/module.h"
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

TEST(MainThread, WithoutChecksOrHostAnyThreadWillDo) {
    answering_host elsewhere(false);
    enter_module(&elsewhere); // checks are off at first
    EXPECT_NO_THROW(ensure_main_thread());
    enter_module(nullptr)->enable_thread_checks(true);
    EXPECT_NO_THROW(ensure_main_thread());
    enter_module(&elsewhere)->enable_thread_checks(false);
    EXPECT_NO_THROW(ensure_main_thread());
    enter_module(nullptr);
}

TEST(MainThreadDeathTest, AnyOtherStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    answering_host here(true);
    answering_host elsewhere(false);
    enter_module(&here)->enable_thread_checks(true);
    EXPECT_NO_THROW(ensure_main_thread());
    enter_module(&elsewhere); // entering again replaces the host
    EXPECT_DEATH(ensure_main_thread(), "VELMORA_BugCheck: core_api::ensure_main_thread\r?\n");
    enter_module(nullptr)->enable_thread_checks(false);
}

} // namespace
} // namespace kelvane
