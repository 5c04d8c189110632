#include "effects/resampler_ssrc/right_angle_fft.h"

#include "effects/resampler_ssrc/small_right_angle_fft.h"
#include "effects/resampler_ssrc/unit_root.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <set>
#include <vector>

namespace kelvane::ssrc {
namespace {

using testing_support::bits_of;
using testing_support::noise;
using testing_support::random_source;
using real = long double;

TEST(UnitRoot, IsExactAtTheEighths) {
    const double diagonal = std::numbers::sqrt2 / 2.0;
    EXPECT_EQ(root_at(0.0).re, 1.0);
    EXPECT_EQ(root_at(0.0).im, 0.0);
    EXPECT_EQ(root_at(0.125).re, diagonal);
    EXPECT_EQ(root_at(0.125).im, diagonal);
    EXPECT_EQ(root_at(0.25).re, 0.0);
    EXPECT_EQ(root_at(0.25).im, 1.0);
    EXPECT_EQ(root_at(0.5).re, -1.0);
    EXPECT_EQ(root_at(0.875).re, diagonal);
    EXPECT_EQ(root_at(0.875).im, -diagonal);
    EXPECT_EQ(root_at(3.75).im, -1.0);
}

TEST(UnitRoot, IsExactToTheLastBitElsewhere) {
    for (int i = 0; i < 4096; ++i) {
        const real angle = 2.0L * std::numbers::pi_v<real> * static_cast<real>(i) / 4096.0L;
        EXPECT_NEAR(root_at(i / 4096.0).re, static_cast<double>(std::cos(angle)), 1.2e-16) << i;
        EXPECT_NEAR(root_at(i / 4096.0).im, static_cast<double>(std::sin(angle)), 1.2e-16) << i;
    }
}

/// The polynomial's value at the root of the number.
std::complex<real> slow_value(const std::vector<double>& re, const std::vector<double>& im, std::size_t root_number) {
    const std::size_t points = re.size();
    std::complex<real> sum;
    for (std::size_t n = 0; n < points; ++n) {
        const std::size_t quarters = (4 * root_number + 1) * n % (4 * points);
        const real angle =
            2.0L * std::numbers::pi_v<real> * static_cast<real>(quarters) / static_cast<real>(4 * points);
        sum += std::complex<real>{static_cast<real>(re[n]), static_cast<real>(im[n])} * std::polar(1.0L, angle);
    }
    return sum;
}

TEST(RightAngleFft, GivesThePolynomialsValuesAtAllItsRoots) {
    random_source random(1);
    for (std::size_t points = 32; points <= 1024; points *= 2) {
        const std::vector<double> re = noise(random, points, 1.0);
        const std::vector<double> im = noise(random, points, 1.0);
        const right_angle_fft transform(points);
        std::vector<double> spectrum(2 * points);
        transform.forward(re.data(), im.data(), spectrum.data());
        std::set<std::size_t> roots;
        for (std::size_t place = 0; place < points; ++place) {
            const std::size_t number = transform.root_number(place);
            roots.insert(number);
            const std::complex<real> expected = slow_value(re, im, number);
            const std::size_t at = 8 * (place / 4) + place % 4;
            ASSERT_NEAR(spectrum[at], static_cast<double>(expected.real()), 1e-13) << points << " place " << place;
            ASSERT_NEAR(spectrum[at + 4], static_cast<double>(expected.imag()), 1e-13) << points << " place " << place;
        }
        EXPECT_EQ(roots.size(), points);
        EXPECT_EQ(*roots.rbegin(), points - 1);
    }
}

TEST(RightAngleFft, AFewPointsGiveTheSame) {
    random_source random(2);
    const small_right_angle_fft transform;
    for (std::size_t points = 1; points <= 16; points *= 2) {
        const std::vector<double> re = noise(random, points, 1.0);
        const std::vector<double> im = noise(random, points, 1.0);
        std::vector<std::complex<double>> values(points);
        for (std::size_t i = 0; i < points; ++i) {
            values[i] = {re[i], im[i]};
        }
        transform.forward(values);
        for (std::size_t place = 0; place < points; ++place) {
            const auto expected = slow_value(re, im, small_right_angle_fft::root_number(place, points));
            ASSERT_NEAR(values[place].real(), static_cast<double>(expected.real()), 1e-14) << points;
            ASSERT_NEAR(values[place].imag(), static_cast<double>(expected.imag()), 1e-14) << points;
        }
        transform.backward(values);
        for (std::size_t i = 0; i < points; ++i) {
            ASSERT_NEAR(values[i].real() / static_cast<double>(points), re[i], 1e-15) << points;
            ASSERT_NEAR(values[i].imag() / static_cast<double>(points), im[i], 1e-15) << points;
        }
    }
}

TEST(RightAngleFft, BackwardGivesThePointsTimesTheSignal) {
    random_source random(3);
    for (std::size_t points = 32; points <= 65536; points *= 2) {
        const std::vector<double> re = noise(random, points, 1.0);
        const std::vector<double> im = noise(random, points, 1.0);
        const right_angle_fft transform(points);
        std::vector<double> spectrum(2 * points);
        transform.forward(re.data(), im.data(), spectrum.data());
        std::vector<double> re_back(points);
        std::vector<double> im_back(points);
        transform.backward(spectrum.data(), re_back.data(), im_back.data());
        for (std::size_t i = 0; i < points; ++i) {
            ASSERT_NEAR(re_back[i] / static_cast<double>(points), re[i], 3e-15) << points;
            ASSERT_NEAR(im_back[i] / static_cast<double>(points), im[i], 3e-15) << points;
        }
    }
}

TEST(RightAngleFft, EveryVectorWidthGivesTheSameBits) {
    if (&best_kernels() == &sse2_kernels()) {
        GTEST_SKIP() << "this processor has one width";
    }
    random_source random(4);
    for (std::size_t points = 32; points <= 16384; points *= 2) {
        const std::vector<double> signal = noise(random, 2 * points, 1.0);
        std::vector<double> narrow(2 * points);
        std::vector<double> wide(2 * points);
        const right_angle_fft narrow_transform(points, sse2_kernels());
        const right_angle_fft wide_transform(points, best_kernels());
        narrow_transform.forward(signal.data(), signal.data() + points, narrow.data());
        wide_transform.forward(signal.data(), signal.data() + points, wide.data());
        EXPECT_EQ(bits_of(narrow), bits_of(wide)) << points;
        std::vector<double> narrow_back(2 * points);
        std::vector<double> wide_back(2 * points);
        narrow_transform.backward(narrow.data(), narrow_back.data(), narrow_back.data() + points);
        wide_transform.backward(wide.data(), wide_back.data(), wide_back.data() + points);
        EXPECT_EQ(bits_of(narrow_back), bits_of(wide_back)) << points;
    }
}

} // namespace
} // namespace kelvane::ssrc
