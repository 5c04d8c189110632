// The root of every counted object that crosses the boundary.
#pragma once

#include "velmora/guid.h"

#include <stdint.h>

namespace velmora {

/// A reference-counted object. Rationale for the missing virtual destructor: two compilers lay its table entries out
/// differently, and an object is freed by `release`, never by the other side's `delete`.
class service {
public:
    /// Gives one reference back; the last one of an instance frees it.
    /// Returns the new count; a static service always answers 1. Never throws. [any-thread]
    virtual uint32_t release() = 0;

    /// Takes one reference. Returns the new count; a static service always answers 1. Never throws. [any-thread]
    virtual uint32_t add_ref() = 0;

    /// Asks for the interface `asked_class`. If the object has it: takes a reference on itself, releases what `*out`
    /// held, stores itself in `*out` and answers true. Otherwise answers false and leaves `*out` alone. `*out` is null
    /// or a valid service on entry; on success the caller owns one reference. Never throws. [any-thread]
    virtual bool query(service** out, const guid* asked_class) = 0;

protected:
    ~service() = default;
};

} // namespace velmora
