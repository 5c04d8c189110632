#include "effects/resampler_ssrc/block_convolver.h"

#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kelvane::ssrc {
namespace {

using testing_support::noise;
using testing_support::random_source;

double slow_convolution(const std::vector<double>& signal, const std::vector<double>& taps, std::size_t at) {
    double sum = 0.0;
    for (std::size_t n = 0; n < taps.size() && n <= at; ++n) {
        sum += taps[n] * signal[at - n];
    }
    return sum;
}

using channels_of_samples = std::vector<std::vector<double>>;

/// One input after the other, channel by channel.
void put_in(block_convolver& convolver, const block_convolver::shape& shape, const channels_of_samples& signals,
            std::size_t first) {
    for (std::size_t i = 0; i < signals.size(); ++i) {
        std::copy_n(signals[i].begin() + static_cast<std::ptrdiff_t>(first), convolver.block_frames(),
                    convolver.input(i / shape.inputs, i % shape.inputs).begin());
    }
}

/// Looks at every seventh frame of a channel's block.
void expect_sums(block_convolver& convolver, const block_convolver::shape& shape, const channels_of_samples& signals,
                 const channels_of_samples& filters, std::size_t channel, std::size_t first) {
    for (std::size_t output = 0; output < shape.outputs; ++output) {
        for (std::size_t i = 0; i < convolver.block_frames(); i += 7) {
            double expected = 0.0;
            for (std::size_t input = 0; input < shape.inputs; ++input) {
                expected += slow_convolution(signals[channel * shape.inputs + input],
                                             filters[input * shape.outputs + output], first + i);
            }
            ASSERT_NEAR(convolver.output(channel, output)[i], expected, 1e-12)
                << filters[0].size() << " taps, channel " << channel << ", frame " << first + i;
        }
    }
}

TEST(BlockConvolver, EveryOutputIsTheSumOfAllInputsThroughTheirFilters) {
    random_source random(1);
    for (const std::size_t taps :
         {std::size_t{1}, std::size_t{31}, std::size_t{32}, std::size_t{33}, std::size_t{200}, std::size_t{1000}}) {
        const block_convolver::shape shape{3, 2, taps, 3};
        block_convolver convolver(shape, best_kernels());
        const std::size_t frames = 5 * convolver.block_frames();
        channels_of_samples filters;
        channels_of_samples signals;
        for (std::size_t i = 0; i < shape.inputs * shape.outputs; ++i) {
            filters.push_back(noise(random, taps, 1.0));
            convolver.set_filter(i / shape.outputs, i % shape.outputs, filters.back());
        }
        for (std::size_t i = 0; i < shape.channels * shape.inputs; ++i) {
            signals.push_back(noise(random, frames, 1.0));
        }
        for (std::size_t first = 0; first < frames; first += convolver.block_frames()) {
            put_in(convolver, shape, signals, first);
            for (std::size_t channel = 0; channel < shape.channels; ++channel) {
                if (channel % 2 == 0) {
                    convolver.run(channel, std::min(shape.channels - channel, std::size_t{2}));
                }
                expect_sums(convolver, shape, signals, filters, channel, first);
            }
            convolver.next_block();
        }
    }
}

} // namespace
} // namespace kelvane::ssrc
