#include "effects/silence/silence_dialog.h"
#include "frame/dialog_controls.h"
#include "frame/settings_dialog.h"
#include "resources/control_ids.h"

namespace kelvane {

namespace {

class silence_dialog final : public settings_dialog<skip_silence_settings> {
public:
    using settings_dialog::settings_dialog;

private:
    void on_initialise() override {
        minimum().set_range(lowest_minimum_position, highest_minimum_position);
        minimum().set_position(minimum_position(current().minimum_ms));
        threshold().set_range(lowest_threshold_position, highest_threshold_position);
        threshold().set_position(threshold_position(current().threshold_db));
        keeps_initial().set_checked(current().keeps_initial);
        show_numbers();
    }

    void on_horizontal_scroll() override {
        current().minimum_ms = minimum_ms_at(minimum().position());
        current().threshold_db = threshold_db_at(threshold().position());
        show_numbers();
    }

    void on_command(int control, int notification) override {
        if (control == SILENCE_KEEPS_INITIAL && notification == BN_CLICKED) {
            current().keeps_initial = keeps_initial().is_checked();
        }
    }

    void show_numbers() {
        wchar_t text[32] = {}; // a number of 32 bits and its unit
        wsprintfW(text, L"%u ms", current().minimum_ms);
        SetWindowTextW(control(SILENCE_MINIMUM_NUMBER), text);
        wsprintfW(text, L"%i dB", current().threshold_db);
        SetWindowTextW(control(SILENCE_THRESHOLD_NUMBER), text);
    }

    trackbar minimum() const { return trackbar(control(SILENCE_MINIMUM)); }
    trackbar threshold() const { return trackbar(control(SILENCE_THRESHOLD)); }
    check_box keeps_initial() const { return check_box(control(SILENCE_KEEPS_INITIAL)); }
};

} // namespace

void show_silence_dialog(const velmora::effect_preset& opening, void* parent_window,
                         velmora::preset_change_callback& callback) {
    silence_dialog(settings_or_defaults<skip_silence_settings>(opening), callback).show(DIALOG_SILENCE, parent_window);
}

} // namespace kelvane
