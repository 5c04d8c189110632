#include "host/objects/abort_switch.h"
#include "host/objects/api.h"
#include "host/objects/block_list.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#endif

namespace host {
namespace {

TEST(AbortSwitch, StaysTriggered) {
    abort_switch abort;
    EXPECT_FALSE(abort.is_aborting());
    abort.trigger();
    abort.trigger();
    EXPECT_TRUE(abort.is_aborting());
}

TEST(AbortSwitch, ItsEventIsSignalledWithIt) {
    abort_switch abort;
#ifdef _WIN32
    EXPECT_EQ(WaitForSingleObject(abort.get_abort_event(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    abort.trigger();
    EXPECT_EQ(WaitForSingleObject(abort.get_abort_event(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
#else
    EXPECT_EQ(abort.get_abort_event(), nullptr);
#endif
}

TEST(Api, KnowsTheThreadThatMadeIt) {
    api made_here([](std::string_view) {});
    EXPECT_TRUE(made_here.is_main_thread());
    bool is_main_elsewhere = true;
    std::thread([&] { is_main_elsewhere = made_here.is_main_thread(); }).join();
    EXPECT_FALSE(is_main_elsewhere);
}

TEST(Api, PassesLinesOnAndLetsNoFailureIntoTheModule) {
    std::vector<std::string> lines;
    api printing([&](std::string_view line) { lines.emplace_back(line); });
    printing.print_console("one line and more", 8);
    EXPECT_EQ(lines, std::vector<std::string>{"one line"});
    api broken([](std::string_view) { throw std::runtime_error("the console is gone"); });
    EXPECT_NO_THROW(broken.print_console("line", 4));
}

TEST(BlockList, GrowingABlockKeepsItsSamples) {
    block grown(std::vector<double>{1.0, 2.0}, 44100, 2, 0x3);
    grown.set_data_size(100);
    EXPECT_GE(grown.get_data_size(), 100U);
    EXPECT_EQ(std::vector<double>(grown.samples().begin(), grown.samples().end()), (std::vector<double>{1.0, 2.0}));
}

TEST(BlockList, InsertsEmptyBlocksAndSaysWhatIsOutOfRange) {
    block_list list;
    list.append(block(std::vector<double>{1.0}, 44100, 1, 0x4));
    velmora::sample_block* const inserted = list.insert_item(0, 10);
    EXPECT_EQ(list.get_item(0), inserted);
    EXPECT_GE(inserted->get_data_size(), 10U);
    EXPECT_EQ(inserted->get_sample_count(), 0U);
    EXPECT_EQ(inserted->get_channels(), 0U);
    EXPECT_EQ(inserted->get_sample_rate(), 0U);
    EXPECT_THROW(list.insert_item(3, 0), std::out_of_range);
    EXPECT_THROW(list.remove_item(2), std::out_of_range);
    list.remove_item(0);
    EXPECT_EQ(list.get_count(), 1U);
    EXPECT_EQ(list.get_item(0)->get_sample_count(), 1U);
}

} // namespace
} // namespace host
