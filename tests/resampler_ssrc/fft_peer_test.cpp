// The transforms against FFTW's.
#include "effects/resampler_ssrc/real_fft.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <fftw3.h>

#include <cmath>
#include <memory>
#include <vector>

namespace kelvane::ssrc {
namespace {

/// In the packing of real_fft.h; the peer's sign is the opposite one.
std::vector<double> peer_transform(std::vector<double> samples) {
    const std::size_t half = samples.size() / 2;
    std::vector<double> interleaved(2 * half + 2);
    auto* bins = reinterpret_cast<fftw_complex*>(interleaved.data());
    const auto destroy = [](fftw_plan plan) { fftw_destroy_plan(plan); };
    const std::unique_ptr<fftw_plan_s, decltype(destroy)> plan(
        fftw_plan_dft_r2c_1d(static_cast<int>(samples.size()), samples.data(), bins, FFTW_ESTIMATE), destroy);
    fftw_execute(plan.get());
    for (std::size_t k = 1; k < half; ++k) {
        interleaved[2 * k + 1] = -interleaved[2 * k + 1];
    }
    interleaved[1] = interleaved[2 * half];
    interleaved.resize(2 * half);
    return interleaved;
}

TEST(RealFftPeer, EverySizeAgrees) {
    testing_support::random_source random(1);
    for (std::size_t size = 4; size <= (std::size_t{1} << 22); size *= size < (1U << 20) ? 2 : 4) {
        std::vector<double> values = testing_support::noise(random, size, 1.0);
        const std::vector<double> expected = peer_transform(values);
        real_fft(size).forward(values);
        double difference = 0.0;
        double whole = 0.0;
        for (std::size_t i = 0; i < size; ++i) {
            difference += (values[i] - expected[i]) * (values[i] - expected[i]);
            whole += expected[i] * expected[i];
        }
        // Both err: each by less than 1.5e-16 times the root of its number of levels.
        EXPECT_LT(std::sqrt(difference / whole), 3e-16 * std::sqrt(std::log2(static_cast<double>(size)))) << size;
    }
}

} // namespace
} // namespace kelvane::ssrc
