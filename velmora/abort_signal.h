// The host's cancellation token.
#pragma once

namespace velmora {

/// Borrowed for the length of the call that it is given to.
class abort_signal {
public:
    /// Whether the user has asked to stop; once true, it stays true. Never throws. [any-thread]
    virtual bool is_aborting() = 0;

    /// A handle to wait on, which becomes signalled with the abort. It stays the signal's own.
    /// Null where the platform has no such handles. Never throws. [any-thread]
    virtual void* get_abort_event() = 0;

protected:
    ~abort_signal() = default;
};

} // namespace velmora
