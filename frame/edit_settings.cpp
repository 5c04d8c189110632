#include "frame/edit_settings.h"

#include "frame/preset.h"
#include "velmora/preset_change_callback.h"

namespace kelvane {

namespace {

/// Keeps the last preset that the dialog reported.
class last_reported final : public velmora::preset_change_callback {
public:
    explicit last_reported(const velmora::effect_preset& opening) : reported(opening) {}
    void on_preset_change(const velmora::effect_preset* changed) override { copy_preset(reported, *changed); }

    preset reported;
};

} // namespace

bool edit_settings_by_dialog(velmora::effect_factory_with_dialog& factory, velmora::effect_preset& edited,
                             void* parent_window) {
    last_reported last(edited);
    factory.show_settings_dialog(&edited, parent_window, &last);
    if (are_equal(last.reported, edited)) {
        return false;
    }
    copy_preset(edited, last.reported);
    return true;
}

} // namespace kelvane
