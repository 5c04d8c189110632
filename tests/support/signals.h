// Test audio, the same in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace testing_support {

using random_source = std::mt19937_64;

/// Uniform in [-amplitude, amplitude).
std::vector<double> noise(random_source& random, std::size_t samples, double amplitude);

/// A whole number in [low, high].
std::size_t pick(random_source& random, std::size_t low, std::size_t high);

/// Lengths of 1 to `longest` that add up to `total`.
std::vector<std::size_t> split(random_source& random, std::size_t total, std::size_t longest);

/// The bits of the samples, for comparisons in which -0.0 and what is not a number count.
std::vector<std::uint64_t> bits_of(const std::vector<double>& samples);

/// The same with every sample that is not a number alike: which of its bits are set is the processor's affair.
std::vector<std::uint64_t> comparable_bits(std::vector<double> samples);

} // namespace testing_support
