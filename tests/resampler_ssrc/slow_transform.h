// The discrete Fourier transform as its definition says, in extended precision.
#pragma once

#include <cstddef>
#include <vector>

namespace testing_support {

/// In the packing of real_fft.h.
std::vector<long double> slow_real_transform(const std::vector<double>& samples);

/// The root-mean-square difference, relative to the expected values.
double relative_error(const std::vector<double>& actual, const std::vector<long double>& expected);

} // namespace testing_support
