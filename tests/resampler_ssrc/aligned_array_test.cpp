#include "effects/resampler_ssrc/aligned_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace kelvane::ssrc {
namespace {

TEST(AlignedArray, BeginsOnACacheLineAndAtZero) {
    aligned_array<double> numbers(100);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(numbers.data()) % 64, 0U);
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 0.0), 100);
}

TEST(AlignedArray, OneMovedFromIsEmpty) {
    aligned_array<double> first(3);
    first[2] = 7.0;
    aligned_array<double> second(std::move(first));
    EXPECT_EQ(first.size(), 0U); // NOLINT(bugprone-use-after-move): it is what is tested
    EXPECT_EQ(first.data(), nullptr);
    ASSERT_EQ(second.size(), 3U);
    EXPECT_EQ(second[2], 7.0);

    aligned_array<double> third(5);
    third = std::move(second);
    EXPECT_EQ(second.size(), 0U); // NOLINT(bugprone-use-after-move): it is what is tested
    EXPECT_EQ(second.data(), nullptr);
    ASSERT_EQ(third.size(), 3U);
    EXPECT_EQ(third[2], 7.0);
}

TEST(AlignedArray, ASizeThatOverflowsFails) {
    EXPECT_THROW(aligned_array<double>(std::numeric_limits<std::size_t>::max() / 4), bad_allocation);
}

} // namespace
} // namespace kelvane::ssrc
