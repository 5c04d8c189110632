#include "effects/crossfeed/crossfeed_dialog.h"
#include "frame/dialog_controls.h"
#include "frame/settings_dialog.h"
#include "resources/control_ids.h"

#include <string>

namespace kelvane {

namespace {

class crossfeed_dialog final : public live_dialog<crossfeed_settings> {
public:
    using live_dialog::live_dialog;

private:
    void on_initialise() override {
        strength().set_range(lowest_crossfeed_position, highest_crossfeed_position);
        strength().set_position(crossfeed_position(current().strength));
        show_number();
    }

    void on_horizontal_scroll() override {
        change(crossfeed_settings_at(strength().position()));
        show_number();
    }

    void show_number() { set_text(window(), CROSSFEED_NUMBER, std::to_string(strength().position())); }

    trackbar strength() const { return trackbar(control(CROSSFEED_STRENGTH)); }
};

} // namespace

void show_crossfeed_dialog(const velmora::effect_preset& opening, void* parent_window,
                           velmora::preset_change_callback& callback) {
    crossfeed_dialog(opening, callback).show(DIALOG_CROSSFEED, parent_window);
}

} // namespace kelvane
