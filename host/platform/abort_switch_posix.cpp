// Systems without wait handles.
#include "host/objects/abort_switch.h"

namespace host {

abort_switch::abort_switch() = default;
abort_switch::~abort_switch() = default;

void abort_switch::trigger() noexcept {
    triggered_.store(true, std::memory_order_release);
}

} // namespace host
