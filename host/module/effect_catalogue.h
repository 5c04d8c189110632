// The effects that a module offers, and finding one by what a person types.
#pragma once

#include "host/module/loaded_module.h"
#include "host/module/references.h"
#include "host/objects/preset.h"
#include "velmora/effect_factory.h"
#include "velmora/effect_instance.h"
#include "velmora/layout_effect_factory.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One effect. A hidden one is known to the host by its GUID alone; its name and default preset are the host's.
struct effect_entry {
    std::string name;
    velmora::guid identity{};
    bool has_dialog = false;
    preset default_preset;
    service_ptr<velmora::effect_factory> factory;               ///< null for a hidden effect
    service_ptr<velmora::layout_effect_factory> hidden_factory; ///< null for a named one

    bool is_hidden() const noexcept { return hidden_factory != nullptr; }

    /// Asks the factory for an instance; answers and out reference are the factory's.
    bool instantiate(velmora::effect_instance** out, const velmora::effect_preset& settings) const;
};

/// No effect, or more than one, goes by the name; the text says so.
class effect_name_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The effect of a preset would not be made from it; the text says so.
class preset_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Asks every effect of the module once. Must not outlive the module. Throws `module_error`.
class effect_catalogue {
public:
    explicit effect_catalogue(const loaded_module& module);

    /// In the order of the service list.
    const std::vector<effect_entry>& effects() const noexcept { return effects_; }

    /// The effect with this display name, GUID, or abbreviation: words whose letters begin words of the name, in their
    /// order, such as "down mono". Capitals do not matter. Throws `effect_name_error`.
    const effect_entry& find(std::string_view name) const;

private:
    std::vector<effect_entry> effects_;
};

/// A running effect. Throws `preset_error` when the effect refuses the preset.
service_ptr<velmora::effect_instance> instantiate(const effect_entry& effect, const preset& settings);

} // namespace host
