// The built module, loaded once as the host would, and its effects by name.
#pragma once

#include "host/module/effect_catalogue.h"
#include "host/module/loaded_module.h"
#include "host/objects/abort_switch.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace testing_support {

/// The module in the current folder.
const host::loaded_module& built_module();

/// Enters it anew with a host's object, or none; what `built_module` answers stays the same.
void enter_built_module(velmora::host_api* api);

/// What it offers.
const host::effect_catalogue& built_effects();

/// A new instance of the effect with this display name, from its default preset.
host::service_ptr<velmora::effect_instance> make_effect(std::string_view display_name);

/// The same from a preset with this payload.
host::service_ptr<velmora::effect_instance> make_effect(std::string_view display_name,
                                                        const std::vector<std::uint8_t>& payload);

/// The first service that is registered under `class_id`.
host::service_ptr<velmora::service> find_service(const velmora::guid& class_id);

/// The same as the interface itself.
template <class Service>
host::service_ptr<Service> find_service() {
    return host::query_as<Service>(*find_service(Service::class_id));
}

} // namespace testing_support
