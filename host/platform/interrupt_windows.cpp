#include "host/objects/abort_switch.h"
#include "host/platform/interrupt.h"

#include <windows.h>

#include <atomic>

namespace host {

namespace {

std::atomic<abort_switch*> triggered_by_console = nullptr;

BOOL WINAPI on_console_event(DWORD event) {
    abort_switch* const triggered = triggered_by_console.load();
    if (triggered == nullptr) {
        return FALSE;
    }
    triggered->trigger();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(INFINITE); // the system ends the process when this returns; the program ends sooner, by itself
    }
    return TRUE;
}

} // namespace

interrupt_guard::interrupt_guard(abort_switch& triggered) {
    triggered_by_console = &triggered;
    SetConsoleCtrlHandler(on_console_event, TRUE);
}

interrupt_guard::~interrupt_guard() {
    SetConsoleCtrlHandler(on_console_event, FALSE);
    triggered_by_console = nullptr;
}

} // namespace host
