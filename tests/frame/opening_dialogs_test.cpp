#include "frame/opening_dialogs.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

namespace kelvane {
namespace {

/// Stands for a dialog: only its address counts.
modal_dialog* stand_in(int& place) {
    return reinterpret_cast<modal_dialog*>(&place);
}

TEST(OpeningDialogs, EachThreadClaimsItsOwnAndOnce) {
    opening_dialogs opening;
    std::latch both_announced(2);
    const auto announce_and_claim = [&](int& dialog) {
        opening.announce(*stand_in(dialog));
        both_announced.arrive_and_wait();
        EXPECT_EQ(opening.claim(), stand_in(dialog));
        EXPECT_EQ(opening.claim(), nullptr);
    };
    int first = 0;
    int second = 0;
    std::thread other([&] { announce_and_claim(first); });
    announce_and_claim(second);
    other.join();
}

TEST(OpeningDialogs, AThreadThatOpensNothingClaimsNothing) {
    opening_dialogs opening;
    int dialog = 0;
    opening.announce(*stand_in(dialog));
    std::thread([&] { EXPECT_EQ(opening.claim(), nullptr); }).join();
    EXPECT_EQ(opening.claim(), stand_in(dialog));
}

} // namespace
} // namespace kelvane
