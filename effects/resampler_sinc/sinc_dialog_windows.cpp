#include "effects/resampler_common/resampler_controls.h"
#include "effects/resampler_sinc/sinc_dialog.h"
#include "effects/resampler_sinc/sinc_quality_core.h"
#include "frame/dialog_controls.h"
#include "frame/settings_dialog.h"
#include "resources/control_ids.h"

namespace kelvane {

namespace {

constexpr int longest_typed_rate_letters = 7; // up to 9999999 Hz

class sinc_dialog final : public live_dialog<sinc_settings> {
public:
    using live_dialog::live_dialog;

private:
    void on_initialise() override {
        fill_lists();
        const sinc_dialog_content shown = show_in_sinc_dialog(current());
        rate().show(shown.rate);
        quality().select(shown.quality);
        show_description(shown.quality);
        exclusions().show(shown.excludes, shown.exclusions);
    }

    void on_command(int control, int notification) override {
        if (is_change(control, notification)) {
            const bool is_rate_selected = control == RESAMPLER_RATE && notification == CBN_SELCHANGE;
            follow_change(is_rate_selected ? rate().selected() : rate().typed());
        }
    }

    static bool is_change(int control, int notification) {
        switch (control) {
        case RESAMPLER_RATE:
            return notification == CBN_SELCHANGE || notification == CBN_EDITCHANGE;
        case SINC_QUALITY:
            return notification == CBN_SELCHANGE;
        case RESAMPLER_EXCLUDE:
            return notification == BN_CLICKED;
        case RESAMPLER_EXCLUSIONS:
            return notification == EN_CHANGE;
        default:
            return false;
        }
    }

    void fill_lists() {
        rate().offer_rates();
        rate().limit_text(longest_typed_rate_letters);
        for (const sinc_quality& level : sinc_qualities) {
            quality().add(level.name);
        }
    }

    void follow_change(const rate_entry& entered) {
        change(read_sinc_dialog({.rate = entered,
                                 .quality = quality().selection(),
                                 .excludes = exclusions().excludes(),
                                 .exclusions = exclusions().exclusions()}));
        show_description(static_cast<int>(current().quality));
        exclusions().follow_box();
    }

    void show_description(int level) {
        set_text(window(), SINC_DESCRIPTION, sinc_qualities.at(static_cast<std::size_t>(level)).description);
    }

    rate_list rate() const { return rate_list(control(RESAMPLER_RATE)); }
    combo_box quality() const { return combo_box(control(SINC_QUALITY)); }
    exclusion_controls exclusions() const { return {control(RESAMPLER_EXCLUDE), control(RESAMPLER_EXCLUSIONS)}; }
};

} // namespace

void show_sinc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback) {
    sinc_dialog(opening, callback).show(DIALOG_SINC, parent_window);
}

} // namespace kelvane
