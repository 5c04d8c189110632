// Counted references to the module's services.
#pragma once

#include "velmora/service.h"
#include "velmora/service_factory.h"

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

/// The service of a record.
inline service_ptr<velmora::service> instance_of(velmora::service_factory& record) {
    velmora::service* answer = nullptr;
    record.get_instance(&answer);
    return service_ptr<velmora::service>(answer);
}

} // namespace host
