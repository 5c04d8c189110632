// One configured effect, as the host stores it.
#pragma once

#include "velmora/guid.h"

#include <stddef.h>

namespace velmora {

/// The effect's GUID and an opaque payload, whose layout is the effect's business. Two presets are equal when owner,
/// size and bytes are equal.
class effect_preset {
public:
    /// Writes the owner to `*out` and returns `out`. [any-thread]
    virtual guid* get_owner(guid* out) const = 0;

    virtual void set_owner(const guid* owner) = 0;

    /// The payload; may be null when its size is 0. Valid until the next change of the preset. [any-thread]
    virtual const void* get_data() const = 0;

    /// Size of the payload, in bytes. [any-thread]
    virtual size_t get_data_size() const = 0;

    /// Replaces the payload by a copy of `bytes` bytes; `data` may be null when `bytes` is 0. May throw a bad
    /// allocation and then leaves the preset as it was. [any-thread]
    virtual void set_data(const void* data, size_t bytes) = 0;

protected:
    ~effect_preset() = default;
};

} // namespace velmora
