// Counting and queries, common to all services of the module.
#pragma once

#include "velmora/service.h"

#include <initializer_list>
#include <memory>

namespace kelvane {

/// Gives a counted service back.
struct releasing {
    void operator()(velmora::service* held) const noexcept { held->release(); }
};

/// A reference to a counted service; `release()` of the pointer hands the reference on.
template <class Service>
using service_ptr = std::unique_ptr<Service, releasing>;

/// Gives back what an out reference holds, if it is not null, and stores `given` there. An exception of what it holds
/// leaves it as it was.
template <class Service>
void store_reference(Service** out, service_ptr<Service> given) {
    if (*out != nullptr) {
        (*out)->release();
    }
    *out = given.release();
}

/// The answer to `service::query` for an object that has the interfaces `answered`.
bool answer_query(velmora::service& self, std::initializer_list<velmora::guid> answered, const velmora::guid& asked,
                  velmora::service** out);

/// A service that lives as long as the module and is never counted. `Also` are base interfaces of `Interface` that it
/// answers to as well.
template <class Interface, class... Also>
class static_service : public Interface {
public:
    std::uint32_t release() final { return 1; }
    std::uint32_t add_ref() final { return 1; }

    bool query(velmora::service** out, const velmora::guid* asked_class) final {
        return answer_query(*this, {Interface::class_id, Also::class_id...}, *asked_class, out);
    }

protected:
    ~static_service() = default;
};

} // namespace kelvane
