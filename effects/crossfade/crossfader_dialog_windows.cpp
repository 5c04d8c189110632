#include "effects/crossfade/crossfader_dialog.h"
#include "frame/dialog_controls.h"
#include "frame/settings_dialog.h"
#include "resources/control_ids.h"

namespace kelvane {

namespace {

class crossfader_dialog final : public settings_dialog<crossfader_settings> {
public:
    using settings_dialog::settings_dialog;

private:
    void on_initialise() override {
        fade().set_range(lowest_crossfader_position, highest_crossfader_position);
        fade().set_position(crossfader_position(current().fade_ms));
        take_position();
    }

    void on_horizontal_scroll() override { take_position(); }

    void take_position() {
        current() = crossfader_settings_at(fade().position());
        wchar_t number[16] = {}; // ten digits at most
        wsprintfW(number, L"%u ms", current().fade_ms);
        SetWindowTextW(control(CROSSFADER_NUMBER), number);
    }

    trackbar fade() const { return trackbar(control(CROSSFADER_FADE)); }
};

} // namespace

void show_crossfader_dialog(const velmora::effect_preset& opening, void* parent_window,
                            velmora::preset_change_callback& callback) {
    crossfader_dialog(settings_or_defaults<crossfader_settings>(opening), callback)
        .show(DIALOG_CROSSFADER, parent_window);
}

} // namespace kelvane
