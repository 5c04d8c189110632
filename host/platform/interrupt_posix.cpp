#include "host/objects/abort_switch.h"
#include "host/platform/interrupt.h"

#include <atomic>
#include <csignal>

namespace host {

namespace {

constexpr int interrupting_signals[] = {SIGINT, SIGTERM, SIGHUP};

std::atomic<abort_switch*> triggered_by_signal = nullptr;

void on_signal(int) {
    if (abort_switch* const triggered = triggered_by_signal.load()) {
        triggered->trigger();
    }
}

} // namespace

interrupt_guard::interrupt_guard(abort_switch& triggered) {
    triggered_by_signal = &triggered;
    for (const int signal : interrupting_signals) {
        std::signal(signal, on_signal);
    }
}

interrupt_guard::~interrupt_guard() {
    for (const int signal : interrupting_signals) {
        std::signal(signal, SIG_DFL);
    }
    triggered_by_signal = nullptr;
}

} // namespace host
