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
/// constructor from it. `show_dialog` runs its dialog. `Interface` is `velmora::effect_factory_with_dialog` or an
/// interface derived from it, and `Also` are the bases that it answers to as well.
template <class Effect, auto show_dialog, class Interface, class... Also>
class basic_settings_factory : public static_service<Interface, Also...> {
    using settings = typename Effect::settings;

public:
    void get_name(velmora::string_receiver* name) final {
        name->set_text(Effect::display_name.data(), Effect::display_name.size());
    }

    void get_default_preset(velmora::effect_preset* preset) final { write_settings(*preset, settings{}); }

    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset* preset) final {
        if (owner_of(*preset) != settings::identity) {
            return false;
        }
        store_reference(out, make_instance<Effect>(settings::read(payload_of(*preset))));
        return true;
    }

    void get_identity(velmora::guid* out) final { *out = settings::identity; }
    bool has_settings_dialog() final { return true; }

    bool edit_settings(velmora::effect_preset* preset, void* parent_window) final {
        return edit_settings_by_dialog(*this, *preset, parent_window);
    }

    void show_settings_dialog(const velmora::effect_preset* preset, void* parent_window,
                              velmora::preset_change_callback* callback) final {
        ensure_main_thread();
        show_dialog(*preset, parent_window, *callback);
    }

protected:
    ~basic_settings_factory() = default;
};

template <class Effect, auto show_dialog>
class settings_effect_factory final
    : public basic_settings_factory<Effect, show_dialog, velmora::effect_factory_with_dialog, velmora::effect_factory> {
};

} // namespace kelvane
