#include "frame/received_text.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(ReceivedText, TakesALengthOrATerminatedText) {
    received_text received;
    received.set_text("abcdef", 3);
    EXPECT_EQ(received.text, "abc");
    received.append_text("defgh", 2);
    EXPECT_EQ(received.text, "abcde");
    received.set_text("xy", velmora::text_is_terminated);
    EXPECT_EQ(received.text, "xy");
    received.append_text("z", velmora::text_is_terminated);
    EXPECT_STREQ(received.get_text(), "xyz");
    received.set_text("", velmora::text_is_terminated);
    EXPECT_EQ(received.text, "");
}

} // namespace
} // namespace kelvane
