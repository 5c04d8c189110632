#include "effects/channels/channel_matrix_core.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace kelvane {
namespace {

using namespace testing_support;

/// The sum as it is defined.
std::vector<double> mix_in_full(const channel_matrix& matrix, const std::vector<double>& in) {
    std::vector<double> out;
    for (std::size_t first = 0; first < in.size(); first += matrix.inputs()) {
        for (std::size_t output = 0; output < matrix.outputs(); ++output) {
            double sum = 0.0;
            for (std::size_t input = 0; input < matrix.inputs(); ++input) {
                sum = sum + in[first + input] * matrix.weight(output, input);
            }
            out.push_back(sum);
        }
    }
    return out;
}

std::vector<double> mix(const channel_matrix& matrix, const std::vector<double>& in) {
    std::vector<double> out(in.size() / matrix.inputs() * matrix.outputs(), 99.0);
    channel_mixer(matrix).mix(in, out);
    return out;
}

/// Weights of which about `zeros` of ten are 0.0.
channel_matrix random_matrix(random_source& random, std::size_t outputs, std::size_t inputs, std::size_t zeros) {
    channel_matrix matrix(outputs, inputs);
    for (std::size_t output = 0; output < outputs; ++output) {
        for (std::size_t input = 0; input < inputs; ++input) {
            matrix.weight(output, input) = pick(random, 1, 10) <= zeros ? 0.0 : noise(random, 1, 2.0)[0];
        }
    }
    return matrix;
}

TEST(ChannelMixer, EqualsTheFullSumBitForBit) {
    random_source random(1);
    for (int round = 0; round < 400; ++round) {
        const channel_matrix matrix = random_matrix(random, pick(random, 1, round % 4 == 0 ? 32 : 8),
                                                    pick(random, 1, round % 5 == 0 ? 32 : 8), pick(random, 0, 10));
        const std::vector<double> in = noise(random, pick(random, 0, 400) * matrix.inputs(), 1.0);
        EXPECT_EQ(bits_of(mix(matrix, in)), bits_of(mix_in_full(matrix, in)))
            << matrix.inputs() << " to " << matrix.outputs() << ", round " << round;
    }
}

TEST(ChannelMixer, StrangeSamplesSpreadAsTheFullSumSpreadsThem) {
    random_source random(2);
    constexpr double strange[] = {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN(), 1e308, -0.0};
    for (const double sample : strange) {
        for (int round = 0; round < 50; ++round) {
            const channel_matrix matrix = random_matrix(random, pick(random, 1, 8), pick(random, 1, 8), 7);
            std::vector<double> in = noise(random, 300 * matrix.inputs(), 1.0);
            in[pick(random, 0, in.size() - 1)] = sample;
            ASSERT_EQ(comparable_bits(mix(matrix, in)), comparable_bits(mix_in_full(matrix, in))) << sample;
        }
    }
}

TEST(ChannelMixer, NoPlaceOfAStrangeSampleIsOverlooked) {
    random_source random(3);
    for (const double sample : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        for (std::size_t inputs = 1; inputs <= 8; ++inputs) {
            const channel_matrix matrix = random_matrix(random, 2, inputs, 5);
            for (std::size_t at = 0; at < 17 * inputs; ++at) {
                std::vector<double> in = noise(random, 17 * inputs, 1.0);
                in[at] = sample;
                ASSERT_EQ(comparable_bits(mix(matrix, in)), comparable_bits(mix_in_full(matrix, in)))
                    << inputs << " inputs, place " << at;
            }
        }
    }
}

TEST(ChannelMixer, WithoutOutputsThereIsNothingToDo) {
    const std::vector<double> in{1.0, 2.0};
    channel_mixer(channel_matrix(0, 2)).mix(in, {});
}

} // namespace
} // namespace kelvane
