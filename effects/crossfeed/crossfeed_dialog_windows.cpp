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
    crossfeed_dialog(const crossfeed_settings& opening, velmora::preset_change_callback& callback)
        : current_(opening), callback_(callback) {}

private:
    void on_initialise() override {
        strength().set_range(lowest_crossfeed_position, highest_crossfeed_position);
        strength().set_position(crossfeed_position(current_.strength));
        show_number();
    }

    void on_horizontal_scroll() override {
        current_ = crossfeed_settings_at(strength().position());
        report();
        show_number();
    }

    void on_command(int control, int notification) override {
        if (notification != BN_CLICKED || (control != IDOK && control != IDCANCEL)) {
            return;
        }
        end(control);
        if (control == IDOK) {
            report();
        }
    }

    void report() {
        preset reported;
        write_settings(reported, current_);
        callback_.on_preset_change(&reported);
    }

    void show_number() { set_text(window(), CROSSFEED_NUMBER, std::to_string(strength().position())); }

    trackbar strength() const { return trackbar(control(CROSSFEED_STRENGTH)); }

    crossfeed_settings current_; ///< the stored value, also one between two positions, until the trackbar moves
    velmora::preset_change_callback& callback_;
};

} // namespace

void show_crossfeed_dialog(const velmora::effect_preset& opening, void* parent_window,
                           velmora::preset_change_callback& callback) {
    const preset before(opening); // the callback may change the preset that it was opened with
    crossfeed_dialog dialog(settings_or_defaults<crossfeed_settings>(before), callback);
    if (dialog.run(DIALOG_CROSSFEED, parent_window) != IDOK) {
        callback.on_preset_change(&before);
    }
}

} // namespace kelvane
