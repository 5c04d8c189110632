#include "effects/crossfeed/crossfeed_dialog.h"
#include "frame/dialog.h"
#include "frame/dialog_controls.h"
#include "frame/preset.h"
#include "frame/preset_payload.h"
#include "resources/control_ids.h"
#include "velmora/preset_change_callback.h"

#include <string>

namespace kelvane {

namespace {

class crossfeed_dialog final : public modal_dialog {
public:
    crossfeed_dialog(const velmora::effect_preset& opening, velmora::preset_change_callback& callback)
        : opening_(opening), callback_(callback) {}

private:
    void on_initialise() override {
        strength().set_range(lowest_crossfeed_position, highest_crossfeed_position);
        const auto settings = settings_or_defaults<crossfeed_settings>(opening_);
        strength().set_position(crossfeed_position(settings.strength));
        show_number();
    }

    void on_horizontal_scroll() override {
        preset live;
        write_settings(live, crossfeed_settings_at(strength().position()));
        callback_.on_preset_change(&live);
        show_number();
    }

    void on_command(int control, int notification) override {
        if (notification == BN_CLICKED && (control == IDOK || control == IDCANCEL)) {
            end(control);
        }
    }

    void show_number() { set_text(window(), CROSSFEED_NUMBER, std::to_string(strength().position())); }

    trackbar strength() const { return trackbar(control(CROSSFEED_STRENGTH)); }

    const velmora::effect_preset& opening_;
    velmora::preset_change_callback& callback_;
};

} // namespace

void show_crossfeed_dialog(const velmora::effect_preset& opening, void* parent_window,
                           velmora::preset_change_callback& callback) {
    const preset before(opening); // the callback may change the preset that it was opened with
    crossfeed_dialog dialog(before, callback);
    if (dialog.run(DIALOG_CROSSFEED, parent_window) != IDOK) {
        callback.on_preset_change(&before);
    }
}

} // namespace kelvane
