// The factory of every effect with settings and a dialog.
#pragma once

#include "frame/edit_settings.h"
#include "frame/instances.h"
#include "frame/main_thread.h"
#include "frame/preset_payload.h"
#include "frame/services.h"
#include "velmora/string_receiver.h"

namespace kelvane {

/// `Effect` has the constant `display_name`, a plain struct `settings` (with `identity`, `read` and `write`), and a
/// constructor from it. `show_dialog` runs its dialog.
template <class Effect, auto show_dialog>
class settings_effect_factory final
    : public static_service<velmora::effect_factory_with_dialog, velmora::effect_factory> {
    using settings = typename Effect::settings;

public:
    void get_name(velmora::string_receiver* name) override {
        name->set_text(Effect::display_name.data(), Effect::display_name.size());
    }

    void get_default_preset(velmora::effect_preset* preset) override { write_settings(*preset, settings{}); }

    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset* preset) override {
        if (owner_of(*preset) != settings::identity) {
            return false;
        }
        store_reference(out, make_instance<Effect>(settings::read(payload_of(*preset))));
        return true;
    }

    void get_identity(velmora::guid* out) override { *out = settings::identity; }
    bool has_settings_dialog() override { return true; }

    bool edit_settings(velmora::effect_preset* preset, void* parent_window) override {
        return edit_settings_by_dialog(*this, *preset, parent_window);
    }

    void show_settings_dialog(const velmora::effect_preset* preset, void* parent_window,
                              velmora::preset_change_callback* callback) override {
        ensure_main_thread();
        show_dialog(*preset, parent_window, *callback);
    }
};

} // namespace kelvane
