#include "effects/resampler_ssrc/ssrc_converter.h"
#include "frame/exceptions.h"
#include "tests/resampler_ssrc/conversions.h"
#include "tests/support/allocations.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kelvane::ssrc {
namespace {

using namespace testing_support;

constexpr rate_pair both_ways[] = {{44100, 48000}, {48000, 44100}};

/// The text of the exception of a set-up that got so many blocks of memory; empty when it was content.
std::string set_up_with(ssrc_converter& converter, const rate_pair& rates, std::int64_t blocks) {
    const allocation_limit limit(blocks);
    try {
        EXPECT_TRUE(converter.set_up(float64_format(rates.input_hz, 2), rates.output_hz, usual_quality));
    } catch (const kelvane::bad_allocation& failure) {
        return failure.what();
    }
    return {};
}

TEST(ConverterMemory, ASetUpThatFailsAtAnyAllocationLeavesNothingBehind) {
    random_source random(1);
    const std::vector<double> samples = noise(random, 8000, 1.0);
    for (const rate_pair& rates : both_ways) {
        const std::vector<double> expected = convert(rates, samples, 2);
        std::int64_t blocks = 0;
        const std::int64_t before = blocks_in_use();
        ssrc_converter converter = make_converter(rates, 2);
        for (std::string text = "-"; !text.empty(); ++blocks) {
            text = set_up_with(converter, rates, blocks);
            if (!text.empty()) {
                EXPECT_EQ(text, "bad allocation");
                EXPECT_EQ(blocks_in_use(), before) << rates << ", block " << blocks;
                EXPECT_FALSE(converter.process({}, false)) << rates << ", block " << blocks;
            }
        }
        EXPECT_GT(blocks, 10) << rates;
        EXPECT_EQ(bits_of(process(converter, samples, true)), bits_of(expected)) << rates;
        converter.destroy();
        EXPECT_EQ(blocks_in_use(), before) << rates;
    }
}

TEST(ConverterMemory, ACallThatGetsNoRoomForItsOutputFailsAndCanBeRepeated) {
    random_source random(2);
    const std::vector<double> samples = noise(random, 20'000, 1.0);
    for (const rate_pair& rates : both_ways) {
        ssrc_converter converter = make_converter(rates);
        {
            const allocation_limit limit(0);
            EXPECT_FALSE(converter.process(std::as_bytes(std::span(samples)), true));
            EXPECT_TRUE(converter.output().empty());
        }
        EXPECT_EQ(bits_of(process(converter, samples, true)), bits_of(convert(rates, samples))) << rates;
    }
}

TEST(ConverterMemory, ASteadyStreamAllocatesNothing) {
    constexpr std::size_t block_frames = 1000;
    const std::vector<double> block(2 * block_frames, 0.25);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, rate_pair{48000, 44100}, rate_pair{44100, 44100}}) {
        ssrc_converter converter = make_converter(rates, 2);
        std::uint64_t before = 0;
        std::size_t made = 0;
        for (int i = 0; i < 3000; ++i) {
            if (i == 50) {
                before = allocations();
            }
            ASSERT_TRUE(converter.process(std::as_bytes(std::span(block)), i == 2999));
            made += converter.output().size() / (2 * sizeof(double));
        }
        EXPECT_EQ(allocations(), before) << rates;
        EXPECT_EQ(made, std::size_t{3'000'000} * rates.output_hz / rates.input_hz) << rates;
    }
}

TEST(ConverterMemory, EqualRatesNeedNoMemoryButTheOutput) {
    ssrc_converter converter;
    const std::uint64_t before = allocations();
    ASSERT_TRUE(converter.set_up(float64_format(44100, 2), 44100, usual_quality));
    EXPECT_EQ(allocations(), before);
    EXPECT_EQ(process(converter, std::vector<double>(2000, 0.25), false).size(), 2000U);
    EXPECT_GT(allocations(), before) << "it is not counted";
}

} // namespace
} // namespace kelvane::ssrc
