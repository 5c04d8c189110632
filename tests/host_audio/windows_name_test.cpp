#include "host/audio/windows_name.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(WindowsName, KnowsWhatAFileMayBeCalled) {
    for (const char* const name :
         {"a.wav", "a", ".wav", "two words.wav", "Gr\303\274\303\237e.wav", "icon.wav", "con1.wav", "com0.wav",
          "com10.wav", "com.wav", "console", "a.con", "conin", "com\xC2\xB4.wav", "com1\xC2\xB9"}) {
        EXPECT_TRUE(is_windows_file_name(name)) << name;
    }
    for (const char* const name : {"", ".", "..", "a.", "a ", "bad<name>.wav", "a:b.wav", "a\"b.wav", "a/b", "a\\b",
                                   "a|b", "what?.wav", "*.wav", "tab\t.wav"}) {
        EXPECT_FALSE(is_windows_file_name(name)) << name;
    }
}

TEST(WindowsName, IsNotThatOfADevice) {
    for (const char* const name : {"CON.wav", "con", "Prn.x.wav", "aux .wav", "nul.wav", "COM1.wav", "lpt9", "CONIN$",
                                   "conout$.wav", "com\xC2\xB9.wav", "LPT\xC2\xB2", "Com\xC2\xB3"}) {
        EXPECT_FALSE(is_windows_file_name(name)) << name;
    }
}

} // namespace
} // namespace host
