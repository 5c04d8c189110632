// Whoever sits before a dialog.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>

namespace testing_support {

/// Waits until the thread that made it shows a dialog, does `acts` with it from a thread of its own, and closes what is
/// still open then, so that no test hangs.
class person {
public:
    explicit person(std::function<void(HWND dialog)> acts);
    ~person();
    person(const person&) = delete;
    person& operator=(const person&) = delete;

private:
    std::thread thread_;
};

/// Presses and releases a key over a control, through the queue, as the keyboard does.
void press_key(HWND control, int key);

/// Takes a trackbar's thumb with the left button, over the middle of the bar, and lets it go at its right end.
void drag_thumb_to_end(HWND trackbar);

/// Waits, with much patience, until something is so; false when it never was.
bool wait_until(const std::function<bool()>& is_so);

std::wstring text_of(HWND window);

} // namespace testing_support
