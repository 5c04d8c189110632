#include "frame/dialog_controls.h"

#include "frame/received_text.h"
#include "quillet/quillet.h"

#include <commctrl.h>

namespace kelvane {

namespace {

std::string text_of(HWND control) {
    received_text received;
    uGetWindowText(control, &received);
    return received.text;
}

} // namespace

void trackbar::set_range(int low, int high) const {
    // Both ends in messages of their own: one for both would cut them to 16 bits.
    SendMessageW(control_, TBM_SETRANGEMIN, FALSE, low);
    SendMessageW(control_, TBM_SETRANGEMAX, TRUE, high);
}

void trackbar::set_position(int position) const {
    SendMessageW(control_, TBM_SETPOS, TRUE, position);
}

int trackbar::position() const {
    return static_cast<int>(SendMessageW(control_, TBM_GETPOS, 0, 0));
}

void check_box::set_checked(bool is_checked) const {
    SendMessageW(control_, BM_SETCHECK, is_checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

bool check_box::is_checked() const {
    return SendMessageW(control_, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void combo_box::add(const std::string& choice) const {
    uSendMessageText(control_, CB_ADDSTRING, 0, choice.c_str());
}

void combo_box::limit_text(int letters) const {
    SendMessageW(control_, CB_LIMITTEXT, static_cast<WPARAM>(letters), 0);
}

void combo_box::select(int choice) const {
    SendMessageW(control_, CB_SETCURSEL, static_cast<WPARAM>(choice), 0);
}

int combo_box::selection() const {
    return static_cast<int>(SendMessageW(control_, CB_GETCURSEL, 0, 0));
}

void combo_box::set_text(const std::string& text) const {
    uSetWindowText(control_, text.c_str());
}

std::string combo_box::text() const {
    return text_of(control_);
}

void edit_box::enable(bool is_enabled) const {
    EnableWindow(control_, is_enabled ? TRUE : FALSE);
}

void edit_box::set_text(const std::string& text) const {
    uSetWindowText(control_, text.c_str());
}

std::string edit_box::text() const {
    return text_of(control_);
}

void set_text(HWND dialog, int id, const std::string& text) {
    uSetDlgItemText(dialog, static_cast<unsigned>(id), text.c_str());
}

} // namespace kelvane
