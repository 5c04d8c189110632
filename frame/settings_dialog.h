// Dialogs for an effect's settings: taken over by OK, or heard at once (Windows).
#pragma once

#include "frame/dialog.h"
#include "frame/preset.h"
#include "frame/preset_payload.h"
#include "velmora/preset_change_callback.h"

#include <utility>

namespace kelvane {

/// Edits `Settings` (with `identity`, `read` and `write`). OK reports the current ones, once; any other end reports
/// nothing.
template <class Settings>
class settings_dialog : public modal_dialog {
public:
    /// `callback` must outlive the dialog.
    settings_dialog(Settings opening, velmora::preset_change_callback& callback)
        : callback_(callback), current_(std::move(opening)) {}

    /// Runs the template with number `template_id`. An exception of the callback comes out behind the dialog.
    void show(int template_id, void* parent_window) {
        if (ends_by_ok(template_id, parent_window)) {
            report_current();
        } else {
            on_cancelled();
        }
    }

protected:
    ~settings_dialog() override = default;

    /// At first the opening ones, also where no control can show them.
    Settings& current() noexcept { return current_; }

    void report(const velmora::effect_preset& reported) { callback_.on_preset_change(&reported); }

    void report_current() {
        preset reported;
        write_settings(reported, current_);
        report(reported);
    }

private:
    /// The dialog has ended, and not by OK.
    virtual void on_cancelled() {}

    bool ends_by_ok(int template_id, void* parent_window) {
        try {
            return run(template_id, parent_window) == IDOK;
        } catch (...) {
            cancel_after_failure();
            throw;
        }
    }

    void cancel_after_failure() noexcept {
        try {
            on_cancelled();
        } catch (...) {
            // The first failure is the one that comes out.
        }
    }

    velmora::preset_change_callback& callback_;
    Settings current_;
};

/// Every change is reported at once, and OK reports the current settings once more; any other end reports the opening
/// preset. An exception of the callback closes the dialog, which then reports the opening preset too.
template <class Settings>
class live_dialog : public settings_dialog<Settings> {
public:
    /// A preset of another effect, or one that cannot be read, opens with the defaults. `callback` must outlive the
    /// dialog.
    live_dialog(const velmora::effect_preset& opening, velmora::preset_change_callback& callback)
        : settings_dialog<Settings>(settings_or_defaults<Settings>(opening), callback), opening_(opening) {}

protected:
    ~live_dialog() override = default;

    void change(Settings changed) {
        this->current() = std::move(changed);
        this->report_current();
    }

private:
    void on_cancelled() final { this->report(opening_); }

    const preset opening_; ///< a copy: the callback may change the preset that the dialog was opened with
};

} // namespace kelvane
