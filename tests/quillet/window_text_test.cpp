// The library's text functions on real windows.
#include "host/objects/text.h"
#include "quillet/quillet.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>

namespace {

constexpr unsigned edit_id = 17;
constexpr auto sample = "44.1 kHz \xE2\x99\xAB d\xC3\xA9j\xC3\xA0"; // a sign outside every code page

using window = std::unique_ptr<HWND__, decltype(&DestroyWindow)>;

window make_window(const wchar_t* class_name, HWND parent, unsigned id) {
    return {CreateWindowExW(0, class_name, L"", parent == nullptr ? WS_OVERLAPPED : WS_CHILD, 0, 0, 200, 100, parent,
                            reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), nullptr, nullptr),
            &DestroyWindow};
}

class WindowText : public testing::Test {
protected:
    window parent_ = make_window(L"STATIC", nullptr, 0);
    window edit_ = make_window(L"EDIT", parent_.get(), edit_id);
    host::text got_;
};

TEST_F(WindowText, AWindowGivesBackWhatItGot) {
    ASSERT_TRUE(uSetWindowText(parent_.get(), sample));
    EXPECT_EQ(uGetWindowText(parent_.get(), &got_), std::string(sample).size());
    EXPECT_EQ(got_.str(), sample);
}

TEST_F(WindowText, AControlIsFoundByItsNumber) {
    ASSERT_TRUE(uSetDlgItemText(parent_.get(), edit_id, sample));
    EXPECT_EQ(uGetDlgItemText(parent_.get(), edit_id, &got_), std::string(sample).size());
    EXPECT_EQ(got_.str(), sample);
    EXPECT_FALSE(uSetDlgItemText(parent_.get(), edit_id + 1, sample));
}

TEST_F(WindowText, AnEmptyTextReplacesTheOld) {
    got_.set_text("old", 3);
    uSetWindowText(parent_.get(), sample);
    uSetWindowText(parent_.get(), "");
    EXPECT_EQ(uGetWindowText(parent_.get(), &got_), 0U);
    EXPECT_EQ(got_.str(), "");
}

TEST_F(WindowText, AMessageCarriesItsText) {
    const window box = make_window(L"LISTBOX", parent_.get(), edit_id + 2);
    EXPECT_EQ(uSendMessageText(box.get(), LB_ADDSTRING, 0, sample), 0);
    wchar_t line[64] = {};
    SendMessageW(box.get(), LB_GETTEXT, 0, reinterpret_cast<LPARAM>(line));
    EXPECT_STREQ(line, L"44.1 kHz \u266B d\u00E9j\u00E0");
}

} // namespace
