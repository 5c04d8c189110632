#include "effects/resampler_sinc/sinc_dialog.h"
#include "effects/resampler_sinc/sinc_quality_core.h"
#include "frame/dialog.h"
#include "frame/dialog_controls.h"
#include "frame/preset.h"
#include "frame/preset_payload.h"
#include "resources/control_ids.h"
#include "velmora/preset_change_callback.h"

#include <string>

namespace kelvane {

namespace {

class sinc_dialog final : public modal_dialog {
public:
    sinc_dialog(const sinc_settings& opening, velmora::preset_change_callback& callback)
        : current_(opening), callback_(callback) {}

private:
    void on_initialise() override {
        fill_lists();
        const sinc_dialog_content shown = show_in_sinc_dialog(current_);
        rate().set_text(shown.rate);
        quality().select(shown.quality);
        show_description(shown.quality);
        exclude_box().set_checked(shown.excludes);
        exclusions().set_text(shown.exclusions);
        exclusions().enable(shown.excludes);
    }

    void on_command(int control, int notification) override {
        if (notification == BN_CLICKED && (control == IDOK || control == IDCANCEL)) {
            finish(control);
        } else if (is_change(control, notification)) {
            follow_change(control == SINC_RATE && notification == CBN_SELCHANGE);
        }
    }

    static bool is_change(int control, int notification) {
        switch (control) {
        case SINC_RATE:
            return notification == CBN_SELCHANGE || notification == CBN_EDITCHANGE;
        case SINC_QUALITY:
            return notification == CBN_SELCHANGE;
        case SINC_EXCLUDE:
            return notification == BN_CLICKED;
        case SINC_EXCLUSIONS:
            return notification == EN_CHANGE;
        default:
            return false;
        }
    }

    void fill_lists() {
        for (const std::uint32_t rate_hz : offered_sinc_rates_hz) {
            rate().add(std::to_string(rate_hz));
        }
        rate().limit_text(longest_typed_rate_letters);
        for (const sinc_quality& level : sinc_qualities) {
            quality().add(level.name);
        }
    }

    void follow_change(bool is_rate_selected) {
        current_ = read_sinc_dialog({.rate = is_rate_selected ? selected_rate() : rate().text(),
                                     .quality = quality().selection(),
                                     .excludes = exclude_box().is_checked(),
                                     .exclusions = exclusions().text()});
        show_description(static_cast<int>(current_.quality));
        exclusions().enable(current_.excludes);
        report();
    }

    void finish(int button) {
        end(button);
        if (button == IDOK) {
            report();
        }
    }

    void report() {
        preset reported;
        write_settings(reported, current_);
        callback_.on_preset_change(&reported);
    }

    /// The text of the control is still the one before the selection.
    std::string selected_rate() const {
        const int selected = rate().selection();
        return selected < 0 ? rate().text()
                            : std::to_string(offered_sinc_rates_hz.at(static_cast<std::size_t>(selected)));
    }

    void show_description(int level) {
        set_text(window(), SINC_DESCRIPTION, sinc_qualities.at(static_cast<std::size_t>(level)).description);
    }

    combo_box rate() const { return combo_box(control(SINC_RATE)); }
    combo_box quality() const { return combo_box(control(SINC_QUALITY)); }
    check_box exclude_box() const { return check_box(control(SINC_EXCLUDE)); }
    edit_box exclusions() const { return edit_box(control(SINC_EXCLUSIONS)); }

    sinc_settings current_; ///< those that were stored, also where no control can show them, until the first change
    velmora::preset_change_callback& callback_;
};

} // namespace

void show_sinc_dialog(const velmora::effect_preset& opening, void* parent_window,
                      velmora::preset_change_callback& callback) {
    const preset before(opening); // the callback may change the preset that it was opened with
    sinc_dialog dialog(settings_or_defaults<sinc_settings>(before), callback);
    if (dialog.run(DIALOG_SINC, parent_window) != IDOK) {
        callback.on_preset_change(&before);
    }
}

} // namespace kelvane
