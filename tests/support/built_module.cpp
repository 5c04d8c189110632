#include "tests/support/built_module.h"

#include <stdexcept>

namespace testing_support {

namespace {

#ifdef _WIN32
constexpr auto module_file = "kelvane.dll";
#else
constexpr auto module_file = "kelvane.so";
#endif

} // namespace

const host::loaded_module& built_module() {
    static const host::loaded_module module(module_file, nullptr);
    return module;
}

void enter_built_module(velmora::host_api* api) {
    built_module(); // the first to load it, and the last to let it go
    const host::loaded_module entered(module_file, api);
}

const host::effect_catalogue& built_effects() {
    static const host::effect_catalogue catalogue(built_module());
    return catalogue;
}

namespace {

const host::effect_entry& effect_called(std::string_view display_name) {
    for (const host::effect_entry& effect : built_effects().effects()) {
        if (effect.name == display_name) {
            return effect;
        }
    }
    throw std::runtime_error("no such effect: " + std::string(display_name));
}

} // namespace

host::service_ptr<velmora::effect_instance> make_effect(std::string_view display_name) {
    const host::effect_entry& effect = effect_called(display_name);
    return host::instantiate(effect, effect.default_preset);
}

host::service_ptr<velmora::effect_instance> make_effect(std::string_view display_name,
                                                        const std::vector<std::uint8_t>& payload) {
    const host::effect_entry& effect = effect_called(display_name);
    host::preset settings = effect.default_preset;
    settings.set_data(payload.data(), payload.size());
    return host::instantiate(effect, settings);
}

host::service_ptr<velmora::service> find_service(const velmora::guid& class_id) {
    for (velmora::service_factory* const record : built_module().services()) {
        if (*record->class_id == class_id) {
            return host::instance_of(*record);
        }
    }
    return nullptr;
}

} // namespace testing_support
