#include "frame/dialog.h"

#include "frame/opening_dialogs.h"

#include <commctrl.h>

namespace kelvane {

namespace {

opening_dialogs opening;

HINSTANCE this_module() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&opening), &module);
    return module;
}

void register_trackbars() {
    const INITCOMMONCONTROLSEX bars{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
    InitCommonControlsEx(&bars);
}

} // namespace

INT_PTR modal_dialog::run(int template_id, void* parent_window) {
    register_trackbars();
    opening.announce(*this);
    const INT_PTR result = DialogBoxParamW(this_module(), MAKEINTRESOURCEW(template_id),
                                           static_cast<HWND>(parent_window), &modal_dialog::procedure, 0);
    if (window_ == nullptr) {
        opening.claim(); // the window was never made
    }
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    return result;
}

HWND modal_dialog::control(int id) const {
    return GetDlgItem(window_, id);
}

INT_PTR CALLBACK modal_dialog::procedure(HWND window, UINT message, WPARAM wparam, LPARAM) {
    auto* dialog = reinterpret_cast<modal_dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr) {
        dialog = opening.claim();
        if (dialog == nullptr) {
            return FALSE;
        }
        dialog->window_ = window;
        SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    }
    return dialog->handle(message, wparam) ? TRUE : FALSE;
}

bool modal_dialog::handle(UINT message, WPARAM wparam) noexcept {
    try {
        return dispatch(message, wparam);
    } catch (...) {
        failure_ = std::current_exception();
        end(IDCANCEL);
        return true;
    }
}

bool modal_dialog::dispatch(UINT message, WPARAM wparam) {
    switch (message) {
    case WM_INITDIALOG:
        on_initialise();
        is_ready_ = true;
        return true;
    case WM_COMMAND:
        if (is_ready_) {
            take_command(LOWORD(wparam), HIWORD(wparam));
        }
        return is_ready_;
    case WM_HSCROLL:
        if (is_ready_) {
            on_horizontal_scroll();
        }
        return is_ready_;
    default:
        return false;
    }
}

void modal_dialog::take_command(int control, int notification) {
    if (notification != BN_CLICKED || (control != IDOK && control != IDCANCEL)) {
        on_command(control, notification);
        return;
    }
    if (control == IDOK) {
        on_ok();
    }
    end(control);
}

void modal_dialog::end(INT_PTR result) {
    is_ready_ = false; // what the closing window still sends is nobody's wish
    EndDialog(window_, result);
}

} // namespace kelvane
