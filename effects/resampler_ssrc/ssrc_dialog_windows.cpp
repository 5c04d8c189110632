#include "effects/resampler_common/resampler_controls.h"
#include "effects/resampler_ssrc/ssrc_dialog.h"
#include "frame/settings_dialog.h"
#include "resources/control_ids.h"

namespace kelvane {

namespace {

class ssrc_dialog final : public settings_dialog<ssrc_settings> {
public:
    using settings_dialog::settings_dialog;

private:
    void on_initialise() override {
        const ssrc_dialog_content shown = show_in_ssrc_dialog(current());
        rate().offer_rates();
        rate().show(shown.rate);
        exclusions().show(shown.excludes, shown.exclusions);
    }

    void on_command(int control, int notification) override {
        if (control == RESAMPLER_EXCLUDE && notification == BN_CLICKED) {
            exclusions().follow_box();
        }
    }

    void on_ok() override {
        current() = read_ssrc_dialog(
            {.rate = rate().typed(), .excludes = exclusions().excludes(), .exclusions = exclusions().exclusions()});
    }

    rate_list rate() const { return rate_list(control(RESAMPLER_RATE)); }
    exclusion_controls exclusions() const { return {control(RESAMPLER_EXCLUDE), control(RESAMPLER_EXCLUSIONS)}; }
};

} // namespace

void show_ssrc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback) {
    ssrc_dialog(open_in_ssrc_dialog(opening), callback).show(DIALOG_SSRC, parent_window);
}

} // namespace kelvane
