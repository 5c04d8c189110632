// The controls of a dialog, typed (Windows).
#pragma once

#include <windows.h>

#include <string>

namespace kelvane {

/// A horizontal trackbar. Positions are whole numbers.
class trackbar {
public:
    explicit trackbar(HWND control) noexcept : control_(control) {}

    void set_range(int low, int high) const;
    void set_position(int position) const;
    int position() const;

private:
    HWND control_;
};

class check_box {
public:
    explicit check_box(HWND control) noexcept : control_(control) {}

    void set_checked(bool is_checked) const;
    bool is_checked() const;

private:
    HWND control_;
};

/// A list to choose from, as a rule with an edit field in which anything may be typed. Texts are UTF-8.
class combo_box {
public:
    explicit combo_box(HWND control) noexcept : control_(control) {}

    void add(const std::string& choice) const;
    void limit_text(int letters) const;

    /// The choices count from 0.
    void select(int choice) const;

    /// -1 when none is selected. When a selection has changed, the text follows only after the notification.
    int selection() const;
    void set_text(const std::string& text) const;
    std::string text() const;

private:
    HWND control_;
};

/// A line to type in, UTF-8. A disabled one keeps its text.
class edit_box {
public:
    explicit edit_box(HWND control) noexcept : control_(control) {}

    void enable(bool is_enabled) const;
    void set_text(const std::string& text) const;
    std::string text() const;

private:
    HWND control_;
};

/// Shows a UTF-8 text in the control `id` of a dialog.
void set_text(HWND dialog, int id, const std::string& text);

} // namespace kelvane
