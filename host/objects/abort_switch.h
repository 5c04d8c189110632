// The host's way to stop a call that is under way.
#pragma once

#include "velmora/abort_signal.h"

#include <atomic>

namespace host {

/// Once triggered, it stays so. `trigger` is safe in a signal handler and from any thread.
class abort_switch final : public velmora::abort_signal {
public:
    abort_switch();
    ~abort_switch(); // NOLINT(performance-trivially-destructible): one system has a handle to close
    abort_switch(const abort_switch&) = delete;
    abort_switch& operator=(const abort_switch&) = delete;

    bool is_aborting() override { return triggered_.load(std::memory_order_acquire); }
    void* get_abort_event() override { return event_; }

    void trigger() noexcept;

private:
    static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");
    std::atomic<bool> triggered_ = false;
    void* event_ = nullptr; ///< the system's wait handle, where there is one
};

} // namespace host
