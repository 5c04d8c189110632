// A text that the other side fills.
#pragma once

#include <stddef.h>

namespace velmora {

/// A length of `text_is_terminated` in place of a count of bytes: the text runs up to its terminating zero.
inline constexpr size_t text_is_terminated = ~static_cast<size_t>(0);

/// Holds UTF-8 text. Lengths are in bytes. Every call may throw a bad allocation and then leaves the text as it was.
class string_receiver {
public:
    /// Adds `length` bytes behind the text; they are copied. [any-thread]
    virtual void append_text(const char* utf8, size_t length) = 0;

    /// The text with a terminating zero. It stays the receiver's own, until its next change. [any-thread]
    virtual const char* get_text() = 0;

    /// Replaces the text by a copy of `length` bytes. [any-thread]
    virtual void set_text(const char* utf8, size_t length) = 0;

protected:
    ~string_receiver() = default;
};

} // namespace velmora
