#include "frame/dialog_controls.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <memory>

namespace kelvane {
namespace {

using window = std::unique_ptr<HWND__, decltype(&DestroyWindow)>;

window make(const wchar_t* class_name, DWORD style, HWND parent) {
    return {CreateWindowExW(0, class_name, L"", style, 0, 0, 200, 100, parent, nullptr, nullptr, nullptr),
            &DestroyWindow};
}

class Controls : public testing::Test {
protected:
    window control(const wchar_t* class_name, DWORD style) { return make(class_name, WS_CHILD | style, parent_.get()); }

private:
    window parent_ = make(L"STATIC", WS_OVERLAPPED, nullptr);
};

TEST_F(Controls, ATrackbarKeepsToItsRange) {
    const INITCOMMONCONTROLSEX bars{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
    InitCommonControlsEx(&bars);
    const window made = control(TRACKBAR_CLASSW, TBS_NOTICKS);
    const trackbar bar(made.get());
    bar.set_range(1, 100'000); // beyond 16 bits
    bar.set_position(70'000);
    EXPECT_EQ(bar.position(), 70'000);
    bar.set_position(200'000);
    EXPECT_EQ(bar.position(), 100'000);
    bar.set_position(0);
    EXPECT_EQ(bar.position(), 1);
}

TEST_F(Controls, ACheckBoxIsCheckedOrNot) {
    const window made = control(L"BUTTON", BS_AUTOCHECKBOX);
    const check_box box(made.get());
    EXPECT_FALSE(box.is_checked());
    box.set_checked(true);
    EXPECT_TRUE(box.is_checked());
    SendMessageW(made.get(), BM_CLICK, 0, 0);
    EXPECT_FALSE(box.is_checked());
}

TEST_F(Controls, AComboBoxTakesAChoiceAndAnyOtherText) {
    const window made = control(L"COMBOBOX", CBS_DROPDOWN);
    const combo_box box(made.get());
    box.add("44100");
    box.add("48000");
    EXPECT_EQ(SendMessageW(made.get(), CB_GETCOUNT, 0, 0), 2);
    SendMessageW(made.get(), CB_SETCURSEL, 1, 0);
    EXPECT_EQ(box.text(), "48000");
    box.set_text("12345");
    EXPECT_EQ(box.text(), "12345");
    box.select(0);
    EXPECT_EQ(box.selection(), 0);
    EXPECT_EQ(box.text(), "44100");
    box.select(-1);
    EXPECT_EQ(box.selection(), -1);
}

TEST_F(Controls, AComboBoxTakesAsManyLettersAsItMay) {
    const window made = control(L"COMBOBOX", CBS_DROPDOWN);
    const combo_box box(made.get());
    box.limit_text(3);
    for (const char digit : {'1', '2', '3', '4'}) {
        SendMessageW(GetWindow(made.get(), GW_CHILD), WM_CHAR, static_cast<WPARAM>(digit), 1);
    }
    EXPECT_EQ(box.text(), "123");
}

TEST_F(Controls, AnEditBoxKeepsItsTextWhileDisabled) {
    const window made = control(L"EDIT", 0);
    const edit_box box(made.get());
    box.set_text("44100;88200-96000 d\xC3\xA9j\xC3\xA0");
    box.enable(false);
    EXPECT_EQ(IsWindowEnabled(made.get()), FALSE);
    EXPECT_EQ(box.text(), "44100;88200-96000 d\xC3\xA9j\xC3\xA0");
    box.enable(true);
    EXPECT_NE(IsWindowEnabled(made.get()), FALSE);
}

} // namespace
} // namespace kelvane
