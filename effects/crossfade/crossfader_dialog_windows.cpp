#include "effects/crossfade/crossfader_dialog.h"
#include "frame/dialog.h"
#include "frame/dialog_controls.h"
#include "frame/preset.h"
#include "frame/preset_payload.h"
#include "resources/control_ids.h"
#include "velmora/preset_change_callback.h"

namespace kelvane {

namespace {

class crossfader_dialog final : public modal_dialog {
public:
    explicit crossfader_dialog(const crossfader_settings& opening) : chosen_(opening) {}

    /// What stood there at the end.
    const crossfader_settings& chosen() const noexcept { return chosen_; }

private:
    void on_initialise() override {
        fade().set_range(lowest_crossfader_position, highest_crossfader_position);
        fade().set_position(crossfader_position(chosen_.fade_ms));
        take_position();
    }

    void on_horizontal_scroll() override { take_position(); }

    void on_command(int control, int notification) override {
        if (notification == BN_CLICKED && (control == IDOK || control == IDCANCEL)) {
            end(control);
        }
    }

    void take_position() {
        chosen_ = crossfader_settings_at(fade().position());
        wchar_t number[16] = {}; // ten digits at most
        wsprintfW(number, L"%u ms", chosen_.fade_ms);
        SetWindowTextW(control(CROSSFADER_NUMBER), number);
    }

    trackbar fade() const { return trackbar(control(CROSSFADER_FADE)); }

    crossfader_settings chosen_;
};

} // namespace

void show_crossfader_dialog(const velmora::effect_preset& opening, void* parent_window,
                            velmora::preset_change_callback& callback) {
    crossfader_dialog dialog(settings_or_defaults<crossfader_settings>(opening));
    if (dialog.run(DIALOG_CROSSFADER, parent_window) == IDOK) {
        preset chosen;
        write_settings(chosen, dialog.chosen());
        callback.on_preset_change(&chosen);
    }
}

} // namespace kelvane
