#include "frame/opening_dialogs.h"

#include <gtest/gtest.h>

#include <thread>

namespace kelvane {
namespace {

/// Stands for a dialog: only its address counts.
modal_dialog* stand_in(int& place) {
    return reinterpret_cast<modal_dialog*>(&place);
}

TEST(OpeningDialogs, EachThreadClaimsItsOwnAndOnce) {
    opening_dialogs opening;
    const auto expect_to_claim = [&](int& dialog) {
        EXPECT_EQ(opening.claim(), stand_in(dialog));
        EXPECT_EQ(opening.claim(), nullptr);
    };
    int first = 0;
    int second = 0;
    opening.announce(*stand_in(first));
    std::thread([&] {
        opening.announce(*stand_in(second));
        expect_to_claim(second);
    }).join();
    expect_to_claim(first);
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
