// One record of the module's list of services.
#pragma once

#include "velmora/service.h"

#include <stddef.h>

namespace velmora {

/// A static record. Behind its two fields lies the service object itself; the host reaches it by `get_instance` only.
class service_factory {
public:
    /// Queries the record's service for `class_id` and stores it in `*out` (null or a valid service on entry), with one
    /// reference for the caller. [any-thread]
    virtual void get_instance(service** out) = 0;

    service_factory* next = nullptr; ///< the next record, or null behind the last
    const guid* class_id = nullptr;  ///< the interface under which the service is registered

protected:
    ~service_factory() = default;
};

static_assert(sizeof(service_factory) == 3 * sizeof(void*), "table pointer, next record, class identity");

} // namespace velmora
