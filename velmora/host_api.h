// What the host answers to a module that it has loaded.
#pragma once

#include <stddef.h>

namespace velmora {

/// Belongs to the host and outlives the module's use of it.
class host_api {
public:
    /// Whether the calling thread is the host's main thread. Never throws. [any-thread]
    virtual bool is_main_thread() = 0;

    /// Prints one line on the host's console. `length` is in bytes of UTF-8, without a line end. The text is copied
    /// before the call returns. Never throws. [any-thread]
    virtual void print_console(const char* utf8, size_t length) = 0;

protected:
    ~host_api() = default;
};

} // namespace velmora
