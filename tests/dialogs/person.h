// Whoever sits before a dialog.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

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

POINT middle_of(const RECT& area);

/// Presses and releases a key over a control, through the queue, as the keyboard does.
void press_key(HWND control, int key);

/// Types into an edit field; what is selected there goes.
void type(HWND field, const std::wstring& letters);
void select_all(HWND field);

/// Where the keys of an editable list go.
HWND typing_field(HWND list);

/// Clicks on a button or a check box.
void press_button(HWND dialog, int id);
void press_ok(HWND dialog);
void press_cancel(HWND dialog);

/// The Escape key, and the box in the corner of the window.
void press_escape(HWND dialog);
void press_close_box(HWND dialog);

/// Takes a trackbar's thumb with the left button, over the middle of the bar, and lets it go at its right end.
void drag_thumb_to_end(HWND trackbar);

/// Waits, with much patience, until something is so; false when it never was.
bool wait_until(const std::function<bool()>& is_so);

std::wstring text_of(HWND window);

/// The text of a control, and those of all.
std::wstring text_in(HWND dialog, int id);
std::vector<std::wstring> texts_in(HWND dialog);

/// What a list offers, from the top.
std::vector<std::wstring> choices_in(HWND dialog, int list);

/// Waits until a control shows the text; false when it never did.
bool shows(HWND dialog, int id, const std::wstring& text);

/// The index of a list's selection, -1 when there is none.
LRESULT selection_of(HWND dialog, int list);

bool is_checked(HWND dialog, int id);
bool is_dropped_down(HWND dialog, int list);
bool is_enabled(HWND dialog, int id);

} // namespace testing_support
