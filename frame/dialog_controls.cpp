#include "frame/dialog_controls.h"

#include "quillet/quillet.h"

#include <commctrl.h>

namespace kelvane {

namespace {

/// Takes a text from the host's library.
class received_text final : public velmora::string_receiver {
public:
    void append_text(const char* utf8, std::size_t length) override { text.append(utf8, length); }
    const char* get_text() override { return text.c_str(); }
    void set_text(const char* utf8, std::size_t length) override { text.assign(utf8, length); }

    std::string text;
};

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
