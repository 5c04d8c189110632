// Modal settings dialogs on Windows.
#pragma once

#include <windows.h>

#include <exception>

namespace kelvane {

/// One opened dialog. A dialog's own class says what happens at each event; the base runs the template, finds the
/// object to a window, and lets no exception into the system: it closes the dialog and passes on behind it.
class modal_dialog {
public:
    modal_dialog() = default;
    modal_dialog(const modal_dialog&) = delete;
    modal_dialog& operator=(const modal_dialog&) = delete;

protected:
    virtual ~modal_dialog() = default;

    /// Runs the template with number `template_id` over `parent_window` until it ends and returns its result: `IDOK`,
    /// or anything else for a dialog that was cancelled or could not be opened.
    INT_PTR run(int template_id, void* parent_window);

    /// The controls are there and empty. What this writes into them comes back to no event.
    virtual void on_initialise() = 0;

    /// A control's notification: a click on a button (`BN_CLICKED`), a change of a text or a selection. OK and Cancel
    /// end the dialog and do not come here.
    virtual void on_command([[maybe_unused]] int control, [[maybe_unused]] int notification) {}

    /// A horizontal trackbar was moved, by mouse, keyboard or wheel.
    virtual void on_horizontal_scroll() {}

    /// OK was pressed; the controls can be read for the last time.
    virtual void on_ok() {}

    HWND control(int id) const;
    HWND window() const noexcept { return window_; }

private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    bool handle(UINT message, WPARAM wparam) noexcept;
    bool dispatch(UINT message, WPARAM wparam);
    void take_command(int control, int notification);
    void end(INT_PTR result);

    HWND window_ = nullptr;
    bool is_ready_ = false; ///< initialised: from here on events are the user's
    std::exception_ptr failure_;
};

} // namespace kelvane
