// The host's utility library: plain C functions, UTF-8 text. The real player brings its own; the stand-in beside this
// header does the same work for the stand-in host and the tests.
#pragma once

#include "velmora/string_receiver.h"

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
struct HWND__; // the operating system's window handle, without its header
#endif

extern "C" {

/// Stops the process after a fault that cannot be. Does not return. [any-thread]
[[noreturn]] void uBugCheck();

/// Logs the text of a crash; `length` in bytes, without a line end. Never throws. [any-thread]
void uPrintCrashInfo_OnEvent(const char* text, size_t length);

/// Sets `out` to the text that `format` and its arguments give, as printf does. May throw a bad allocation.
/// [any-thread]
void uPrintfV(velmora::string_receiver* out, const char* format, va_list arguments);

/// A handle to wait on that is never signalled; the library's own. Null where the platform has no such handles.
/// [any-thread]
void* GetInfiniteWaitEvent();

/// The largest magnitude among `count` samples, 0 for none; samples that are not numbers do not count. [any-thread]
double audio_math_calculate_peak(const double* samples, size_t count);

#ifdef _WIN32
// Text of windows and controls. A text set is zero-terminated; a text got replaces the receiver's, and the answer is
// its length in bytes. False, or 0, when the window does not take it. [main-thread]
bool uSetDlgItemText(HWND__* dialog, unsigned id, const char* text);
size_t uGetDlgItemText(HWND__* dialog, unsigned id, velmora::string_receiver* out);
intptr_t uSendMessageText(HWND__* window, unsigned message, uintptr_t wparam, const char* text);
bool uSetWindowText(HWND__* window, const char* text);
size_t uGetWindowText(HWND__* window, velmora::string_receiver* out);
#endif

} // extern "C"

namespace audio_math {

inline double calculate_peak(const double* samples, size_t count) {
    return audio_math_calculate_peak(samples, count);
}

} // namespace audio_math
