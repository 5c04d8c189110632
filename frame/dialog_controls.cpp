#include "frame/dialog_controls.h"

#include "quillet/quillet.h"

#include <commctrl.h>

namespace kelvane {

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

void set_text(HWND dialog, int id, const std::string& text) {
    uSetDlgItemText(dialog, static_cast<unsigned>(id), text.c_str());
}

} // namespace kelvane
