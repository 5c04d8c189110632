// The factory of every effect without settings.
#pragma once

#include "frame/instances.h"
#include "frame/preset.h"
#include "frame/services.h"
#include "velmora/effect_factory.h"
#include "velmora/string_receiver.h"

#include <string_view>

namespace kelvane {

/// `Effect` has a default constructor and the constants `identity` (GUID) and `display_name`. Its presets have an empty
/// payload; one with any byte in it is refused, not ignored.
template <class Effect>
class plain_effect_factory final : public static_service<velmora::effect_factory> {
public:
    void get_name(velmora::string_receiver* name) override {
        name->set_text(Effect::display_name.data(), Effect::display_name.size());
    }

    void get_default_preset(velmora::effect_preset* preset) override {
        preset->set_owner(&Effect::identity);
        preset->set_data(nullptr, 0);
    }

    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset* preset) override {
        if (owner_of(*preset) != Effect::identity || preset->get_data_size() != 0) {
            return false;
        }
        store_reference(out, make_instance<Effect>());
        return true;
    }

    void get_identity(velmora::guid* out) override { *out = Effect::identity; }
    bool has_settings_dialog() override { return false; }
    bool edit_settings(velmora::effect_preset*, void*) override { return false; }
};

} // namespace kelvane
