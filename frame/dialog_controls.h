// The controls of a dialog, typed.
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

/// Shows a UTF-8 text in the control `id` of a dialog.
void set_text(HWND dialog, int id, const std::string& text);

} // namespace kelvane
