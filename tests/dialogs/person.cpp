#include "tests/dialogs/person.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <chrono>

namespace testing_support {

namespace {

constexpr std::chrono::milliseconds poll_interval(10);
constexpr std::chrono::seconds patience(20);

BOOL CALLBACK take_visible_dialog(HWND window, LPARAM found) {
    wchar_t class_name[16] = {};
    GetClassNameW(window, class_name, 16);
    if (std::wstring(class_name) != L"#32770" || IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

HWND wait_for_dialog(DWORD thread) {
    HWND found = nullptr;
    const auto give_up = std::chrono::steady_clock::now() + patience;
    while (found == nullptr && std::chrono::steady_clock::now() < give_up) {
        EnumThreadWindows(thread, take_visible_dialog, reinterpret_cast<LPARAM>(&found));
        std::this_thread::sleep_for(poll_interval);
    }
    return found;
}

LPARAM position_of(POINT at) {
    return MAKELPARAM(at.x, at.y);
}

} // namespace

POINT middle_of(const RECT& area) {
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

person::person(std::function<void(HWND)> acts)
    : thread_([acts = std::move(acts), dialog_thread = GetCurrentThreadId()] {
          const HWND dialog = wait_for_dialog(dialog_thread);
          if (dialog == nullptr) {
              ADD_FAILURE() << "no dialog was shown";
              return;
          }
          SetCursorPos(0, 0); // a list that opens under the pointer would follow it
          acts(dialog);
          const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
          while (IsWindow(dialog) != FALSE && std::chrono::steady_clock::now() < give_up) {
              std::this_thread::sleep_for(poll_interval);
          }
          if (IsWindow(dialog) != FALSE) {
              ADD_FAILURE() << "the dialog was still open";
              EndDialog(dialog, -1);
              PostMessageW(dialog, WM_NULL, 0, 0);
          }
      }) {}

person::~person() {
    thread_.join();
}

void press_key(HWND control, int key) {
    PostMessageW(control, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    PostMessageW(control, WM_KEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001U));
}

void type(HWND field, const std::wstring& letters) {
    for (const wchar_t letter : letters) {
        PostMessageW(field, WM_CHAR, static_cast<WPARAM>(letter), 1);
    }
}

void select_all(HWND field) {
    PostMessageW(field, EM_SETSEL, 0, -1);
}

HWND typing_field(HWND list) {
    return GetWindow(list, GW_CHILD);
}

void press_button(HWND dialog, int id) {
    PostMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
}

void press_ok(HWND dialog) {
    press_button(dialog, IDOK);
}

void press_cancel(HWND dialog) {
    press_button(dialog, IDCANCEL);
}

void press_escape(HWND dialog) {
    press_key(GetDlgItem(dialog, IDOK), VK_ESCAPE);
}

void press_close_box(HWND dialog) {
    PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void drag_thumb_to_end(HWND trackbar) {
    RECT thumb{};
    SendMessageW(trackbar, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    RECT bar{};
    GetClientRect(trackbar, &bar);
    const POINT from = middle_of(thumb);
    const POINT to{bar.right - 1, from.y};
    PostMessageW(trackbar, WM_LBUTTONDOWN, MK_LBUTTON, position_of(from));
    PostMessageW(trackbar, WM_MOUSEMOVE, MK_LBUTTON, position_of(middle_of(bar)));
    PostMessageW(trackbar, WM_MOUSEMOVE, MK_LBUTTON, position_of(to));
    PostMessageW(trackbar, WM_LBUTTONUP, 0, position_of(to));
}

bool wait_until(const std::function<bool()>& is_so) {
    const auto give_up = std::chrono::steady_clock::now() + patience;
    while (!is_so()) {
        if (std::chrono::steady_clock::now() > give_up) {
            return false;
        }
        std::this_thread::sleep_for(poll_interval);
    }
    return true;
}

std::wstring text_of(HWND window) {
    wchar_t text[256] = {};
    SendMessageW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
    return text;
}

std::wstring text_in(HWND dialog, int id) {
    return text_of(GetDlgItem(dialog, id));
}

std::vector<std::wstring> texts_in(HWND dialog) {
    std::vector<std::wstring> texts;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        texts.push_back(text_of(child));
    }
    return texts;
}

std::vector<std::wstring> choices_in(HWND dialog, int list) {
    const HWND control = GetDlgItem(dialog, list);
    std::vector<std::wstring> choices(static_cast<std::size_t>(SendMessageW(control, CB_GETCOUNT, 0, 0)));
    for (std::size_t choice = 0; choice < choices.size(); ++choice) {
        choices[choice].resize(static_cast<std::size_t>(SendMessageW(control, CB_GETLBTEXTLEN, choice, 0)));
        SendMessageW(control, CB_GETLBTEXT, choice, reinterpret_cast<LPARAM>(choices[choice].data()));
    }
    return choices;
}

bool shows(HWND dialog, int id, const std::wstring& text) {
    return wait_until([&] { return text_in(dialog, id) == text; });
}

LRESULT selection_of(HWND dialog, int list) {
    return SendMessageW(GetDlgItem(dialog, list), CB_GETCURSEL, 0, 0);
}

bool is_checked(HWND dialog, int id) {
    return SendMessageW(GetDlgItem(dialog, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool is_dropped_down(HWND dialog, int list) {
    return SendMessageW(GetDlgItem(dialog, list), CB_GETDROPPEDSTATE, 0, 0) != FALSE;
}

bool is_enabled(HWND dialog, int id) {
    return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE;
}

} // namespace testing_support
