#include "effects/resampler_ssrc/real_fft.h"

#include "tests/resampler_ssrc/slow_transform.h"
#include "tests/support/allocations.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace kelvane::ssrc {
namespace {

using testing_support::bits_of;
using testing_support::noise;
using testing_support::random_source;

/// The error of a good transform grows like the square root of the number of its levels.
double error_bound(std::size_t size) {
    return 1.5e-16 * std::sqrt(std::log2(static_cast<double>(size)));
}

TEST(RealFft, GivesTheSumsOfItsDefinition) {
    random_source random(1);
    for (std::size_t size = 4; size <= 1024; size *= 2) {
        std::vector<double> samples = noise(random, size, 1.0);
        const auto expected = testing_support::slow_real_transform(samples);
        real_fft(size).forward(samples);
        EXPECT_LT(testing_support::relative_error(samples, expected), error_bound(size)) << size;
    }
}

TEST(RealFft, ATransformOfFourByHand) {
    std::vector<double> values{1.0, 2.0, 4.0, 8.0};
    real_fft(4).forward(values);
    EXPECT_EQ(values, (std::vector<double>{15.0, -5.0, -3.0, -6.0})); // 1 - 4 and 2 - 8
}

TEST(RealFft, BackwardGivesHalfTheSizeTimesTheSignal) {
    random_source random(2);
    for (std::size_t size = 4; size <= (std::size_t{1} << 20); size *= 2) {
        const std::vector<double> samples = noise(random, size, 1.0);
        std::vector<double> values = samples;
        real_fft plan(size);
        rdft(plan, 1, values);
        rdft(plan, -1, values);
        double power = 0.0;
        for (std::size_t i = 0; i < size; ++i) {
            const double difference = values[i] / (static_cast<double>(size) / 2.0) - samples[i];
            power += difference * difference;
        }
        // The samples' mean square is 1/3.
        EXPECT_LT(std::sqrt(3.0 * power / static_cast<double>(size)), 2.0 * error_bound(size)) << size;
    }
}

TEST(RealFft, ABinIsATone) {
    for (const std::size_t size : {std::size_t{8}, std::size_t{256}, std::size_t{4096}}) {
        real_fft plan(size);
        for (const std::size_t bin : {std::size_t{1}, size / 4, size / 4 + 1, size / 2 - 1}) {
            std::vector<double> values(size);
            values[2 * bin + 1] = 1.0;
            plan.backward(values);
            for (std::size_t j = 0; j < size; ++j) {
                const double turns = static_cast<double>(j * bin % size) / static_cast<double>(size);
                ASSERT_NEAR(values[j], std::sin(2.0 * std::numbers::pi * turns), 1e-14) << size << " bin " << bin;
            }
        }
    }
}

TEST(RealFft, TheDirectionTellsByItsSign) {
    random_source random(3);
    real_fft plan(64);
    const std::vector<double> samples = noise(random, 64, 1.0);
    for (const int direction : {0, 1, 7, -1, -5}) {
        std::vector<double> by_sign = samples;
        std::vector<double> by_name = samples;
        rdft(plan, direction, by_sign);
        direction < 0 ? plan.backward(by_name) : plan.forward(by_name);
        EXPECT_EQ(by_sign, by_name) << direction;
    }
}

TEST(RealFft, EveryVectorWidthGivesTheSameBits) {
    if (&best_kernels() == &sse2_kernels()) {
        GTEST_SKIP() << "this processor has one width";
    }
    random_source random(4);
    for (std::size_t size = 4; size <= 65536; size *= 2) {
        std::vector<double> narrow = noise(random, size, 1.0);
        std::vector<double> wide = narrow;
        real_fft narrow_plan(size, sse2_kernels());
        real_fft wide_plan(size, best_kernels());
        narrow_plan.forward(narrow);
        wide_plan.forward(wide);
        EXPECT_EQ(bits_of(narrow), bits_of(wide)) << size;
        narrow_plan.backward(narrow);
        wide_plan.backward(wide);
        EXPECT_EQ(bits_of(narrow), bits_of(wide)) << size;
    }
}

TEST(RealFft, ATransformAllocatesNothing) {
    real_fft plan(4096);
    std::vector<double> values(4096, 1.0);
    const auto before = testing_support::allocations();
    plan.forward(values);
    plan.backward(values);
    EXPECT_EQ(testing_support::allocations(), before);
}

} // namespace
} // namespace kelvane::ssrc
