// Linear prediction as one writes it down.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace testing_support {

/// The coefficients by the recursion, step by step: those of each order are made from those of the one before.
inline std::vector<double> literal_lpc_coefficients(const std::vector<double>& lags) {
    const auto order = static_cast<int>(lags.size()) - 1;
    std::vector<double> a(static_cast<std::size_t>(order), 0.0);
    const auto at = [&](int i) -> double& { return a[static_cast<std::size_t>(i)]; };
    const auto lag = [&](int i) { return lags[static_cast<std::size_t>(i)]; };
    double error = lag(0) * 1.0000000001;
    for (int i = 0; i < order && !(error < lag(0) * 1e-9 + 1e-10); ++i) {
        double sum = lag(i + 1);
        for (int j = 0; j < i; ++j) {
            sum = sum + at(j) * lag(i - j);
        }
        const double k = -(sum / error);
        const std::vector<double> before(a.begin(), a.end());
        for (int j = 0; j < i; ++j) {
            const double mirrored = before[static_cast<std::size_t>(i - 1 - j)];
            at(j) = j == i - 1 - j ? at(j) * (1.0 + k) : at(j) + k * mirrored;
        }
        at(i) = k;
        error = error * (1.0 - k * k);
    }
    return a;
}

/// Autocorrelation lags of 32-bit samples.
inline std::vector<double> literal_lags(const std::vector<double>& history, std::size_t order) {
    std::vector<double> lags;
    for (std::size_t k = 0; k <= order; ++k) {
        double sum = 0.0;
        for (std::size_t n = k; n < history.size(); ++n) {
            sum = sum + history[n] * history[n - k];
        }
        lags.push_back(sum);
    }
    return lags;
}

/// `count` samples behind `history`; below 65 samples of history they are silence.
inline std::vector<double> literal_continuation(std::vector<double> history, std::size_t count) {
    if (history.size() < 65) {
        history.assign(count, 0.0);
        return history;
    }
    for (double& sample : history) {
        sample = static_cast<double>(static_cast<float>(sample));
    }
    std::vector<double> weights = literal_lpc_coefficients(literal_lags(history, 32));
    double damping = 1.0;
    for (double& weight : weights) {
        damping = damping * 0.99;
        weight = static_cast<double>(static_cast<float>(weight * damping));
    }
    const std::size_t known = history.size();
    for (std::size_t n = 0; n < count; ++n) {
        double sum = 0.0;
        for (std::size_t j = 0; j < weights.size(); ++j) {
            sum = sum + weights[j] * history[history.size() - 1 - j];
        }
        history.push_back(static_cast<double>(static_cast<float>(-sum)));
    }
    return {history.begin() + static_cast<std::ptrdiff_t>(known), history.end()};
}

} // namespace testing_support
