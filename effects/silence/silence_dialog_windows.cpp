#include "effects/silence/silence_dialog.h"
#include "frame/dialog.h"
#include "frame/dialog_controls.h"
#include "frame/preset.h"
#include "frame/preset_payload.h"
#include "resources/control_ids.h"
#include "velmora/preset_change_callback.h"

namespace kelvane {

namespace {

class silence_dialog final : public modal_dialog {
public:
    explicit silence_dialog(const skip_silence_settings& opening) : current_(opening) {}

    const skip_silence_settings& current() const noexcept { return current_; }

private:
    void on_initialise() override {
        minimum().set_range(lowest_minimum_position, highest_minimum_position);
        minimum().set_position(minimum_position(current_.minimum_ms));
        threshold().set_range(lowest_threshold_position, highest_threshold_position);
        threshold().set_position(threshold_position(current_.threshold_db));
        keeps_initial().set_checked(current_.keeps_initial);
        show_numbers();
    }

    void on_horizontal_scroll() override {
        current_.minimum_ms = minimum_ms_at(minimum().position());
        current_.threshold_db = threshold_db_at(threshold().position());
        show_numbers();
    }

    void on_command(int control, int notification) override {
        if (notification != BN_CLICKED) {
            return;
        }
        if (control == IDOK || control == IDCANCEL) {
            end(control);
        } else if (control == SILENCE_KEEPS_INITIAL) {
            current_.keeps_initial = keeps_initial().is_checked();
        }
    }

    void show_numbers() {
        wchar_t text[32] = {}; // a number of 32 bits and its unit
        wsprintfW(text, L"%u ms", current_.minimum_ms);
        SetWindowTextW(control(SILENCE_MINIMUM_NUMBER), text);
        wsprintfW(text, L"%i dB", current_.threshold_db);
        SetWindowTextW(control(SILENCE_THRESHOLD_NUMBER), text);
    }

    trackbar minimum() const { return trackbar(control(SILENCE_MINIMUM)); }
    trackbar threshold() const { return trackbar(control(SILENCE_THRESHOLD)); }
    check_box keeps_initial() const { return check_box(control(SILENCE_KEEPS_INITIAL)); }

    skip_silence_settings current_; ///< a stored value that no position stands for stays until a trackbar moves
};

} // namespace

void show_silence_dialog(const velmora::effect_preset& opening, void* parent_window,
                         velmora::preset_change_callback& callback) {
    silence_dialog dialog(settings_or_defaults<skip_silence_settings>(opening));
    if (dialog.run(DIALOG_SILENCE, parent_window) == IDOK) {
        preset reported;
        write_settings(reported, dialog.current());
        callback.on_preset_change(&reported);
    }
}

} // namespace kelvane
