// Making instances, common to all factories.
#pragma once

#include "frame/exceptions.h"
#include "frame/services.h"
#include "velmora/effect_instance.h"

#include <new>
#include <utility>

namespace kelvane {

/// A new instance with one reference. Throws `bad_allocation`.
template <class Effect, class... Arguments>
service_ptr<velmora::effect_instance> make_instance(Arguments&&... arguments) {
    auto* const instance = new (std::nothrow) Effect(std::forward<Arguments>(arguments)...);
    if (instance == nullptr) {
        throw bad_allocation();
    }
    instance->add_ref();
    return service_ptr<velmora::effect_instance>(instance);
}

} // namespace kelvane
