// Ctrl-C as an abort.
#pragma once

namespace host {

class abort_switch;

/// While it lives, Ctrl-C, a closed terminal and a request to terminate trigger the switch instead of ending the
/// process at once. What the program was started to ignore, as under nohup, stays ignored; at the end all is as it was
/// before. One at a time. The switch lives as long as the process: the system may ask on a thread of its own.
class interrupt_guard {
public:
    explicit interrupt_guard(abort_switch& triggered);
    ~interrupt_guard();
    interrupt_guard(const interrupt_guard&) = delete;
    interrupt_guard& operator=(const interrupt_guard&) = delete;
};

} // namespace host
