// Effects that the host makes for itself, without a name for the user.
#pragma once

#include "velmora/service.h"

namespace velmora {

class effect_instance;
class effect_preset;

/// A static service without state. It has no name, default preset or dialog.
class layout_effect_factory : public service {
public:
    static constexpr guid class_id{0xE3F0C95F, 0x7A0B, 0x48BC, {0x96, 0x58, 0x71, 0xA4, 0x69, 0x68, 0x88, 0x76}};

    /// Makes an instance from a preset whose payload is the requested channel mask, 32 bits little-endian. Answers and
    /// ownership as for `effect_factory::instantiate`. [any-thread]
    virtual bool instantiate(effect_instance** out, const effect_preset* preset) = 0;

    /// Copies the effect's GUID to `*out`. [any-thread]
    virtual void get_identity(guid* out) = 0;

protected:
    ~layout_effect_factory() = default;
};

} // namespace velmora
