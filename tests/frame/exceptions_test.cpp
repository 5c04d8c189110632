#include "frame/exceptions.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(Exceptions, SayTheirFixedTexts) {
    EXPECT_STREQ(mox::exception_overflow().what(), "Overflow");
    EXPECT_STREQ(mox::exception_invalid_params().what(), "Invalid parameters");
    EXPECT_STREQ(mox::exception_not_implemented().what(), "Feature not implemented");
    EXPECT_STREQ(mox::exception_bug_check().what(), "Unknown exception");
    EXPECT_STREQ(velmora_io::exception_io().what(), "Unknown exception");
    EXPECT_STREQ(velmora_io::exception_io_data().what(), "Unsupported format or corrupted file");
    EXPECT_STREQ(velmora_io::exception_io_data_truncation().what(), "Unsupported format or corrupted file");
    EXPECT_STREQ(velmora_io::exception_aborted().what(), "User abort");
    EXPECT_STREQ(kelvane::bad_allocation().what(), "bad allocation");
    EXPECT_STREQ(kelvane::bad_array_length().what(), "bad array new length");
}

template <class Derived, class Base>
constexpr bool is_caught_as = std::is_convertible_v<Derived*, Base*>;

static_assert(is_caught_as<velmora_io::exception_io_data_truncation, velmora_io::exception_io_data>);
static_assert(is_caught_as<velmora_io::exception_io_data, velmora_io::exception_io>);
static_assert(is_caught_as<velmora_io::exception_io, std::exception>);
static_assert(is_caught_as<velmora_io::exception_aborted, std::exception>);
static_assert(!is_caught_as<velmora_io::exception_aborted, velmora_io::exception_io>);
static_assert(is_caught_as<kelvane::bad_allocation, std::bad_alloc>);
static_assert(is_caught_as<kelvane::bad_array_length, std::bad_array_new_length>);

} // namespace
