// The list through which the host finds the module's services.
#pragma once

#include "frame/bug_check.h"
#include "velmora/service_factory.h"

namespace kelvane {

/// The chain of records that the host walks. Records link themselves at the head, so the host meets them in the
/// reverse of their order of initialisation.
class service_list {
public:
    static velmora::service_factory* head() noexcept { return head_; }

    static void link(velmora::service_factory& record) noexcept {
        record.next = head_;
        head_ = &record;
    }

private:
    static constinit inline velmora::service_factory* head_ = nullptr;
};

/// One record and the static service in it, registered under `Class`. Only for static objects.
template <class Service, class Class>
class service_record final : public velmora::service_factory {
public:
    service_record() noexcept {
        class_id = &Class::class_id;
        service_list::link(*this);
    }
    service_record(const service_record&) = delete;
    service_record& operator=(const service_record&) = delete;

    void get_instance(velmora::service** out) override {
        if (!service_.query(out, class_id)) {
            bug_check("forced cast failure");
        }
    }

private:
    Service service_;
};

} // namespace kelvane
