#include "effects/resampler_sinc/lpc_extrapolator_core.h"

#include "tests/support/literal_lpc.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

/// What the predictor makes of a history, which it gets as 32-bit samples.
std::vector<double> continued(const std::vector<double>& history, std::size_t count) {
    std::vector<float> narrow(history.size());
    std::transform(history.begin(), history.end(), narrow.begin(),
                   [](double wide) { return static_cast<float>(wide); });
    std::vector<float> made(count, std::numeric_limits<float>::quiet_NaN());
    extrapolate(narrow, made);
    return {made.begin(), made.end()};
}

/// Solves a system of linear equations by elimination with row exchanges.
std::vector<double> solve(std::vector<std::vector<double>> matrix, std::vector<double> right) {
    const std::size_t size = right.size();
    for (std::size_t column = 0; column < size; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < size; ++row) {
            pivot = std::fabs(matrix[row][column]) > std::fabs(matrix[pivot][column]) ? row : pivot;
        }
        std::swap(matrix[column], matrix[pivot]);
        std::swap(right[column], right[pivot]);
        for (std::size_t row = column + 1; row < size; ++row) {
            const double factor = matrix[row][column] / matrix[column][column];
            for (std::size_t k = column; k < size; ++k) {
                matrix[row][k] -= factor * matrix[column][k];
            }
            right[row] -= factor * right[column];
        }
    }
    for (std::size_t row = size; row-- > 0;) {
        for (std::size_t k = row + 1; k < size; ++k) {
            right[row] -= matrix[row][k] * right[k];
        }
        right[row] /= matrix[row][row];
    }
    return right;
}

/// The same prediction from the normal equations: the weights that predict the history, silence before and behind it
/// included, with the smallest sum of squared errors. All in double.
std::vector<double> continued_by_normal_equations(std::vector<double> history, std::size_t count) {
    const auto lags = literal_lags(history, 32);
    std::vector<std::vector<double>> matrix(32, std::vector<double>(32));
    std::vector<double> right(32);
    for (std::size_t row = 0; row < 32; ++row) {
        for (std::size_t column = 0; column < 32; ++column) {
            matrix[row][column] = lags[row > column ? row - column : column - row];
        }
        matrix[row][row] *= 1.0000000001;
        right[row] = lags[row + 1];
    }
    const std::vector<double> weights = solve(matrix, right);
    std::vector<double> made;
    for (std::size_t n = 0; n < count; ++n) {
        double next = 0.0;
        for (std::size_t j = 0; j < 32; ++j) {
            next += weights[j] * std::pow(0.99, static_cast<double>(j + 1)) * history[history.size() - 1 - j];
        }
        history.push_back(next);
        made.push_back(next);
    }
    return made;
}

std::vector<double> sine(double frequency, std::size_t count, double decay = 1.0) {
    std::vector<double> made(count);
    for (std::size_t n = 0; n < count; ++n) {
        const auto time = static_cast<double>(n);
        made[n] = 0.8 * std::pow(decay, time) * std::sin(2.0 * std::numbers::pi * frequency * time + 0.5);
    }
    return made;
}

struct known_signal {
    std::string name;
    std::vector<double> samples;
};

std::vector<known_signal> known_signals() {
    random_source random(1);
    return {{"sine", sine(0.0227, 1024)},
            {"low sine", sine(0.002, 1024)},
            {"decaying sine", sine(0.05, 1024, 0.998)},
            {"noise", noise(random, 1024, 0.9)},
            {"short noise", noise(random, 65, 0.9)},
            {"quiet noise", noise(random, 700, 0.001)},
            {"short sine", sine(0.11, 80)}};
}

TEST(LpcExtrapolator, DoesWhatTheNormalEquationsSay) {
    for (const auto& [name, samples] : known_signals()) {
        const double level = *std::max_element(samples.begin(), samples.end());
        const auto made = continued(samples, 200);
        const auto expected = continued_by_normal_equations(samples, 200);
        for (std::size_t n = 0; n < made.size(); ++n) {
            ASSERT_NEAR(made[n], expected[n], 1e-4 * level) << name << ", sample " << n;
        }
    }
}

TEST(LpcExtrapolator, IsTheRecursionBitForBit) {
    for (const auto& [name, samples] : known_signals()) {
        EXPECT_EQ(bits_of(continued(samples, 1024)), bits_of(literal_continuation(samples, 1024))) << name;
    }
}

TEST(LpcExtrapolator, ASineGoesOnAndDiesAway) {
    for (const double frequency : {0.02, 0.05, 0.2}) {
        const auto whole = sine(frequency, 1024 + 600);
        const auto made = continued({whole.begin(), whole.begin() + 1024}, 600);
        for (std::size_t n = 0; n < 600; ++n) {
            const double expected = whole[1024 + n] * std::pow(0.99, static_cast<double>(n + 1));
            EXPECT_NEAR(made[n], expected, 0.08) << frequency << ", sample " << n;
        }
        EXPECT_LT(std::fabs(made[599]), 0.01) << frequency;
    }
}

TEST(LpcExtrapolator, NothingThatComesOutIsLouderThanTheHistory) {
    for (const auto& [name, samples] : known_signals()) {
        const auto loudest = [](const std::vector<double>& heard) {
            return std::fabs(*std::max_element(heard.begin(), heard.end(),
                                               [](double a, double b) { return std::fabs(a) < std::fabs(b); }));
        };
        const auto made = continued(samples, 5000);
        EXPECT_LE(loudest(made), 1.1 * loudest(samples)) << name;
        EXPECT_LT(std::fabs(made.back()), 1e-6) << name;
    }
}

TEST(LpcExtrapolator, SilenceGivesSilence) {
    for (const double level : {0.0, -0.0}) {
        for (const double sample : continued(std::vector<double>(100, level), 50)) {
            EXPECT_EQ(sample, 0.0);
        }
    }
}

/// Without a number in the history there is none to come; each sample is still written, and none beside them.
TEST(LpcExtrapolator, AnyHistoryIsTaken) {
    constexpr float mark = 12345.0F;
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float largest = std::numeric_limits<float>::max();
    for (const float strange : {std::nanf(""), infinite, -infinite, largest, -largest, 1e-45F, 1.0F, -1.0F}) {
        const std::vector<float> history(65, strange);
        std::vector<float> made(42, mark);
        extrapolate(history, std::span(made).subspan(1, 40));
        EXPECT_EQ(made.front(), mark) << strange;
        EXPECT_EQ(made.back(), mark) << strange;
        for (std::size_t n = 1; n <= 40; ++n) {
            EXPECT_NE(made[n], mark) << strange << ", sample " << n;
            EXPECT_EQ(std::isfinite(made[n]), std::isfinite(strange)) << strange << ", sample " << n;
        }
        extrapolate(history, {});
    }
}

} // namespace
} // namespace kelvane
