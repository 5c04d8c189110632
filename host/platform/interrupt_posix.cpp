#include "host/objects/abort_switch.h"
#include "host/platform/interrupt.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>

namespace host {

namespace {

constexpr std::array interrupting_signals{SIGINT, SIGTERM, SIGHUP};

/// What the signals did before the guard. There is one guard at a time.
std::array<struct sigaction, interrupting_signals.size()> earlier_actions;

std::atomic<abort_switch*> triggered_by_signal = nullptr;

void on_signal(int) {
    if (abort_switch* const triggered = triggered_by_signal.load()) {
        triggered->trigger();
    }
}

} // namespace

interrupt_guard::interrupt_guard(abort_switch& triggered) {
    triggered_by_signal = &triggered;
    struct sigaction interrupting {};
    interrupting.sa_handler = on_signal;
    interrupting.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < interrupting_signals.size(); ++i) {
        sigaction(interrupting_signals[i], nullptr, &earlier_actions[i]);
        if (earlier_actions[i].sa_handler != SIG_IGN) { // as under nohup
            sigaction(interrupting_signals[i], &interrupting, nullptr);
        }
    }
}

interrupt_guard::~interrupt_guard() {
    for (std::size_t i = 0; i < interrupting_signals.size(); ++i) {
        sigaction(interrupting_signals[i], &earlier_actions[i], nullptr);
    }
    triggered_by_signal = nullptr;
}

} // namespace host
