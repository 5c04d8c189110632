// The byte streams through which settings travel.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace velmora {

class abort_signal;

/// Bytes for reading, from a position onwards. Every call may throw what the stream's medium throws.
class settings_reader {
public:
    /// Copies up to `bytes` bytes and returns how many; fewer than asked means the end. [any-thread]
    virtual size_t read(void* buffer, size_t bytes, abort_signal* abort) = 0;

    /// Copies exactly `bytes` bytes; throws when fewer are left. [any-thread]
    virtual void read_exact(void* buffer, size_t bytes, abort_signal* abort) = 0;

    /// Passes over up to `bytes` bytes and returns how many. [any-thread]
    virtual uint64_t skip(uint64_t bytes, abort_signal* abort) = 0;

    /// Passes over exactly `bytes` bytes; throws when fewer are left. Returns the new position from the start, in
    /// bytes, not the count. [any-thread]
    virtual uint64_t skip_exact(uint64_t bytes, abort_signal* abort) = 0;

protected:
    ~settings_reader() = default;
};

/// Bytes for writing.
class settings_writer {
public:
    /// Writes all of `bytes` bytes or throws. [any-thread]
    virtual void write(const void* data, size_t bytes, abort_signal* abort) = 0;

protected:
    ~settings_writer() = default;
};

} // namespace velmora
