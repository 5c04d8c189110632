// The wait handle is a manual-reset event.
#include "host/objects/abort_switch.h"

#include <windows.h>

namespace host {

abort_switch::abort_switch() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

abort_switch::~abort_switch() {
    CloseHandle(event_);
}

void abort_switch::trigger() noexcept {
    triggered_.store(true, std::memory_order_release);
    SetEvent(event_);
}

} // namespace host
