// Counted references to the module's services.
#pragma once

#include "velmora/service.h"

#include <memory>

namespace host {

struct releasing {
    void operator()(velmora::service* held) const noexcept { held->release(); }
};

template <class Service>
using service_ptr = std::unique_ptr<Service, releasing>;

/// The interface `Service` of an object, or null when it does not have it.
template <class Service>
service_ptr<Service> query_as(velmora::service& object) {
    velmora::service* answer = nullptr;
    object.query(&answer, &Service::class_id);
    // A class identity stands for one interface, so the answer to it is of that type.
    return service_ptr<Service>(static_cast<Service*>(answer));
}

} // namespace host
