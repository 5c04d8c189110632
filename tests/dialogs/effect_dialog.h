// An effect's settings dialog, worked by a person.
#pragma once

#include "host/objects/preset.h"
#include "tests/dialogs/person.h"
#include "tests/dialogs/reported_presets.h"
#include "tests/support/built_module.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

namespace testing_support {

/// A preset of the effect with this display name.
inline host::preset preset_of(std::string_view effect, const void* payload, std::size_t bytes) {
    host::preset made = built_effects().find(effect).default_preset;
    made.set_data(payload, bytes);
    return made;
}

/// The same settings as those of nobody.
inline host::preset made_foreign(host::preset preset) {
    const velmora::guid another{};
    preset.set_owner(&another);
    return preset;
}

inline std::vector<std::uint8_t> bytes_of(const host::preset& preset) {
    std::vector<std::uint8_t> bytes(preset.payload().size());
    std::memcpy(bytes.data(), preset.payload().data(), bytes.size());
    return bytes;
}

/// Shows the dialog, over no parent, to somebody who does `acts`; returns what it reported, in order.
inline std::vector<host::preset> show_dialog(std::string_view effect, const host::preset& opening,
                                             const std::function<void(HWND)>& acts) {
    const auto factory = host::query_as<velmora::effect_factory_with_dialog>(*built_effects().find(effect).factory);
    reported_presets callback;
    {
        const person user(acts);
        factory->show_settings_dialog(&opening, nullptr, &callback);
    }
    return callback.presets();
}

/// The same for editing a preset in place; returns the answer.
inline bool edit_by_dialog(std::string_view effect, host::preset& edited, const std::function<void(HWND)>& acts) {
    const person user(acts);
    return built_effects().find(effect).factory->edit_settings(&edited, nullptr);
}

} // namespace testing_support
