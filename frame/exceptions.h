// The module's exceptions. Their texts are what the host shows to the user.
#pragma once

#include <exception>
#include <new>

namespace mox {

/// Size arithmetic left its range.
class exception_overflow : public std::exception {
public:
    const char* what() const noexcept override { return "Overflow"; }
};

/// An argument that the operation does not take.
class exception_invalid_params : public std::exception {
public:
    const char* what() const noexcept override { return "Invalid parameters"; }
};

/// The object does not provide the operation, here or at all.
class exception_not_implemented : public std::exception {
public:
    const char* what() const noexcept override { return "Feature not implemented"; }
};

/// The process is stopping because of a fault of its own (bug_check.h).
class exception_bug_check : public std::exception {
public:
    const char* what() const noexcept override { return "Unknown exception"; }
};

} // namespace mox

namespace velmora_io {

/// What reads and writes may throw; the derived classes say more.
class exception_io : public std::exception {
public:
    const char* what() const noexcept override { return "Unknown exception"; }
};

/// The data are not what they should be.
class exception_io_data : public exception_io {
public:
    const char* what() const noexcept override { return "Unsupported format or corrupted file"; }
};

/// The data end too early.
class exception_io_data_truncation : public exception_io_data {};

/// An `abort_signal` answered yes.
class exception_aborted : public std::exception {
public:
    const char* what() const noexcept override { return "User abort"; }
};

} // namespace velmora_io

namespace kelvane {

// The standard library's own classes word their texts as its vendor likes; the host shows these.

class bad_allocation : public std::bad_alloc {
public:
    const char* what() const noexcept override { return "bad allocation"; }
};

class bad_array_length : public std::bad_array_new_length {
public:
    const char* what() const noexcept override { return "bad array new length"; }
};

} // namespace kelvane
