#include "host/objects/abort_switch.h"
#include "host/platform/interrupt.h"

#include <atomic>
#include <csignal>

namespace host {

namespace {

std::atomic<abort_switch*> triggered_by_signal = nullptr;

void on_signal(int) {
    if (abort_switch* const triggered = triggered_by_signal.load()) {
        triggered->trigger();
    }
}

} // namespace

interrupt_guard::interrupt_guard(abort_switch& triggered) {
    triggered_by_signal = &triggered;
    std::signal(SIGINT, on_signal);
    std::signal(SIGTERM, on_signal);
}

interrupt_guard::~interrupt_guard() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    triggered_by_signal = nullptr;
}

} // namespace host
