// The factory of the effects without a name.
#pragma once

#include "frame/instances.h"
#include "frame/preset_payload.h"
#include "frame/services.h"
#include "velmora/layout_effect_factory.h"

namespace kelvane {

/// `Effect` has a plain struct `settings` (with `identity` and `read`) and a constructor from it. A payload of any size
/// is taken.
template <class Effect>
class hidden_effect_factory final : public static_service<velmora::layout_effect_factory> {
    using settings = typename Effect::settings;

public:
    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset* preset) override {
        if (owner_of(*preset) != settings::identity) {
            return false;
        }
        store_reference(out, make_instance<Effect>(settings::read(payload_of(*preset))));
        return true;
    }

    void get_identity(velmora::guid* out) override { *out = settings::identity; }
};

} // namespace kelvane
