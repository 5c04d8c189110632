// The part of the library that speaks with the windows of the system: UTF-8 outside, UTF-16 inside.
#include "quillet/quillet.h"

#include <windows.h>

#include <string>

namespace {

std::wstring widen(const char* utf8) {
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
    std::wstring wide(units > 0 ? static_cast<size_t>(units) : 1, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide.data(), units);
    wide.pop_back(); // the terminating zero
    return wide;
}

std::string narrow(const std::wstring& wide) {
    const int units = static_cast<int>(wide.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(bytes > 0 ? static_cast<size_t>(bytes) : 0, '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

} // namespace

void* GetInfiniteWaitEvent() {
    static const HANDLE never_signalled = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return never_signalled;
}

bool uSetWindowText(HWND window, const char* text) {
    return SetWindowTextW(window, widen(text).c_str()) != FALSE;
}

size_t uGetWindowText(HWND window, velmora::string_receiver* out) {
    std::wstring wide(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    wide.resize(static_cast<size_t>(GetWindowTextW(window, wide.data(), static_cast<int>(wide.size()))));
    const std::string utf8 = narrow(wide);
    out->set_text(utf8.data(), utf8.size());
    return utf8.size();
}

bool uSetDlgItemText(HWND dialog, unsigned id, const char* text) {
    return uSetWindowText(GetDlgItem(dialog, static_cast<int>(id)), text);
}

size_t uGetDlgItemText(HWND dialog, unsigned id, velmora::string_receiver* out) {
    return uGetWindowText(GetDlgItem(dialog, static_cast<int>(id)), out);
}

intptr_t uSendMessageText(HWND window, unsigned message, uintptr_t wparam, const char* text) {
    return SendMessageW(window, message, wparam, reinterpret_cast<LPARAM>(widen(text).c_str()));
}
