#include "tests/resampler_ssrc/slow_transform.h"

#include <cmath>
#include <numbers>

namespace testing_support {

std::vector<long double> slow_real_transform(const std::vector<double>& samples) {
    const std::size_t n = samples.size();
    std::vector<long double> spectrum(n);
    for (std::size_t k = 0; k <= n / 2; ++k) {
        long double re = 0.0L;
        long double im = 0.0L;
        for (std::size_t j = 0; j < n; ++j) {
            const long double angle = 2.0L * std::numbers::pi_v<long double> * static_cast<long double>(j * k % n) /
                                      static_cast<long double>(n);
            re += static_cast<long double>(samples[j]) * std::cos(angle);
            im += static_cast<long double>(samples[j]) * std::sin(angle);
        }
        if (k == 0 || k == n / 2) {
            spectrum[k == 0 ? 0 : 1] = re;
        } else {
            spectrum[2 * k] = re;
            spectrum[2 * k + 1] = im;
        }
    }
    return spectrum;
}

double relative_error(const std::vector<double>& actual, const std::vector<long double>& expected) {
    long double difference = 0.0L;
    long double whole = 0.0L;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const long double d = static_cast<long double>(actual[i]) - expected[i];
        difference += d * d;
        whole += expected[i] * expected[i];
    }
    return static_cast<double>(std::sqrt(difference / whole));
}

} // namespace testing_support
