#include "tests/support/signals.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace testing_support {

std::vector<double> noise(random_source& random, std::size_t samples, double amplitude) {
    constexpr double two_to_63 = 9223372036854775808.0;
    std::vector<double> made(samples);
    for (double& sample : made) {
        // Not a standard distribution: those differ from library to library.
        sample = amplitude * (static_cast<double>(static_cast<std::int64_t>(random())) / two_to_63);
    }
    return made;
}

std::size_t pick(random_source& random, std::size_t low, std::size_t high) {
    return low + static_cast<std::size_t>(random() % (high - low + 1));
}

std::vector<std::size_t> split(random_source& random, std::size_t total, std::size_t longest) {
    std::vector<std::size_t> lengths;
    while (total > 0) {
        const std::size_t length = std::min(total, pick(random, 1, longest));
        lengths.push_back(length);
        total -= length;
    }
    return lengths;
}

std::vector<std::uint64_t> bits_of(const std::vector<double>& samples) {
    std::vector<std::uint64_t> bits(samples.size());
    std::transform(samples.begin(), samples.end(), bits.begin(),
                   [](double sample) { return std::bit_cast<std::uint64_t>(sample); });
    return bits;
}

std::vector<std::uint64_t> comparable_bits(std::vector<double> samples) {
    constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
    std::replace_if(
        samples.begin(), samples.end(), [](double sample) { return std::isnan(sample); }, not_a_number);
    return bits_of(samples);
}

} // namespace testing_support
