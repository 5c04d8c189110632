// The way from a preset to an effect's settings and back.
#pragma once

#include "frame/exceptions.h"
#include "frame/preset.h"

#include <cstddef>
#include <vector>

namespace kelvane {

/// The settings with which a dialog opens: those of the preset, and the defaults for a preset of another effect or one
/// that cannot be read.
template <class Settings>
Settings settings_or_defaults(const velmora::effect_preset& preset) {
    try {
        return owner_of(preset) == Settings::identity ? Settings::read(payload_of(preset)) : Settings{};
    } catch (const velmora_io::exception_io_data&) {
        return {};
    }
}

/// Gives the preset the effect's owner, then the payload, which is made before: settings that have none change nothing.
template <class Settings>
void write_settings(velmora::effect_preset& preset, const Settings& settings) {
    const std::vector<std::byte> payload = settings.write();
    preset.set_owner(&Settings::identity);
    preset.set_data(payload.data(), payload.size());
}

} // namespace kelvane
