#include "effects/resampler_sinc/sinc_resampler_core.h"

#include "tests/support/literal_sinc_resampler.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <ostream>

namespace kelvane {
namespace {

using namespace testing_support;

constexpr std::uint32_t qualities[] = {0, 1, 2, 3, 4};
constexpr std::uint32_t normal = 2;

struct rate_pair {
    std::uint32_t input_hz;
    std::uint32_t output_hz;

    double ratio() const { return static_cast<double>(output_hz) / input_hz; }
};

std::ostream& operator<<(std::ostream& out, const rate_pair& rates) {
    return out << rates.input_hz << " to " << rates.output_hz;
}

std::unique_ptr<sinc_resampler> make(const rate_pair& rates, std::uint32_t channels, std::uint32_t quality) {
    return sinc_resampler::create(rates.input_hz, rates.output_hz, channels, quality);
}

literal_sinc_resampler make_literal(const rate_pair& rates, std::uint32_t channels, std::uint32_t quality) {
    return {rates.input_hz, rates.output_hz, channels, quality};
}

/// Appends to `out` what comes of the frames, in a buffer of just the size that is promised to be enough.
void convert(sinc_resampler& converter, std::span<const double> in, std::size_t channels, std::vector<double>& out) {
    std::vector<double> made(converter.output_room(in.size() / channels) * channels);
    made.resize(converter.process(in, made) * channels);
    out.insert(out.end(), made.begin(), made.end());
}

std::vector<double> converted(sinc_resampler& converter, const std::vector<double>& in, std::size_t channels,
                              const std::vector<std::size_t>& lengths_frames) {
    std::vector<double> out;
    const double* next = in.data();
    for (const std::size_t frames : lengths_frames) {
        convert(converter, {next, frames * channels}, channels, out);
        next += frames * channels;
    }
    return out;
}

std::vector<double> converted(sinc_resampler& converter, const std::vector<double>& in, std::size_t channels) {
    return converted(converter, in, channels, {in.size() / channels});
}

std::vector<double> sine(double cycles_per_frame, std::size_t frames, double first_cycle) {
    std::vector<double> made(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        made[i] = std::sin(2.0 * std::numbers::pi * (first_cycle + cycles_per_frame * static_cast<double>(i)));
    }
    return made;
}

/// So many frames that the literal converter has 20 million products to add, but always more than the filter is long.
std::size_t affordable_frames(const rate_pair& rates, std::uint32_t channels, std::uint32_t taps) {
    const double products_per_frame = taps * std::max(1.0, rates.ratio()) * channels;
    const double frames = std::min(2500.0, 2e7 / products_per_frame);
    return std::max<std::size_t>(static_cast<std::size_t>(frames), taps + 50U);
}

TEST(SincResampler, EqualsTheLiteralOneBitForBit) {
    random_source random(1);
    constexpr rate_pair pairs[] = {{44100, 48000}, {48000, 44100}, {44100, 44100},
                                   {96000, 22050}, {8000, 63997},  {44099, 44101}};
    for (const rate_pair& rates : pairs) {
        for (const std::uint32_t quality : qualities) {
            const auto table = std::make_shared<literal_sinc_table>(quality, rates.ratio());
            for (const std::uint32_t channels : {1U, 2U, 3U, 6U, 8U, 32U}) {
                const auto converter = make(rates, channels, quality);
                literal_sinc_resampler literal(rates.input_hz, rates.output_hz, channels, quality, table);
                ASSERT_EQ(converter->taps(), literal.taps());
                const std::vector<double> in =
                    noise(random, affordable_frames(rates, channels, literal.taps()) * channels, 1.0);
                ASSERT_EQ(bits_of(converted(*converter, in, channels)), bits_of(literal.process(in)))
                    << rates << ", " << sinc_qualities[quality].name << ", " << channels << " channels";
            }
        }
    }
}

TEST(SincResampler, AnyNumberOfChannelsEqualsTheLiteralOne) {
    random_source random(2);
    const rate_pair rates{44100, 48000};
    for (const std::uint32_t quality : {0U, 1U, 2U, 3U}) {
        for (std::uint32_t channels = 1; channels <= 33; ++channels) {
            const std::vector<double> in = noise(random, std::size_t{200} * channels, 1.0);
            ASSERT_EQ(bits_of(converted(*make(rates, channels, quality), in, channels)),
                      bits_of(make_literal(rates, channels, quality).process(in)))
                << sinc_qualities[quality].name << ", " << channels << " channels";
        }
    }
}

TEST(SincResampler, AnyCuttingOfTheInputGivesTheSameBits) {
    random_source random(3);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, {48000, 44100}, {8000, 48000}, {96000, 8000}}) {
        for (const std::uint32_t quality : {0U, 2U, 3U}) {
            for (const std::uint32_t channels : {1U, 2U, 5U}) {
                const std::vector<double> in = noise(random, std::size_t{5000} * channels, 1.0);
                const auto expected = bits_of(converted(*make(rates, channels, quality), in, channels));
                for (const std::size_t longest : {1U, 2U, 7U, 255U, 1023U, 1024U, 1025U, 3000U}) {
                    const auto lengths = split(random, 5000, longest);
                    ASSERT_EQ(bits_of(converted(*make(rates, channels, quality), in, channels, lengths)), expected)
                        << rates << ", " << sinc_qualities[quality].name << ", " << channels
                        << " channels, calls of up to " << longest << " frames";
                }
            }
        }
    }
}

TEST(SincResampler, ARewindLeavesTheOldSamplesInTheRing) {
    random_source random(4);
    for (const rate_pair& rates : {rate_pair{44100, 48000}, {48000, 44100}, {96000, 8000}}) {
        for (const std::uint32_t quality : {0U, 1U, 2U, 3U}) {
            const auto converter = make(rates, 2, quality);
            literal_sinc_resampler literal = make_literal(rates, 2, quality);
            for (const std::size_t frames : {0U, 1U, 5U, 47U, 48U, 1024U, 1500U, 3U, 1023U, 900U}) {
                const std::vector<double> in = noise(random, 2 * frames, 1.0);
                ASSERT_EQ(bits_of(converted(*converter, in, 2)), bits_of(literal.process(in)))
                    << rates << ", " << sinc_qualities[quality].name << ", " << frames << " frames";
                converter->rewind();
                literal.rewind();
            }
        }
    }
}

TEST(SincResampler, Feasibility) {
    struct row {
        rate_pair rates;
        std::uint32_t quality;
        bool is_feasible;
    };
    constexpr std::uint32_t highest_rate = 0xFFFFFFFF;
    const row rows[] = {
        {{0, 48000}, normal, false},
        {{48000, 0}, normal, false},
        {{0, 0}, normal, false},
        {{1000, 20'000'000}, normal, true},
        {{384000, 1501}, normal, true},  // a step of 2^24 x 255.8
        {{384000, 1500}, normal, false}, // 2^32
        {{384000, 1500}, 0, true},       // 2^30: the short filters' time has 22 bits
        {{1'024'000, 1001}, 0, true},
        {{1'024'000, 1000}, 1, false},
        {{384000, 1500}, 4, false},
        {{384000, 1500}, 7, false}, // as "Normal"
        {{1'024'000, 1001}, 7, false},
        {{highest_rate, 16'777'217}, normal, true},  // the step is 255 below the limit
        {{highest_rate, 16'777'216}, normal, false}, // it is the limit
        {{1, highest_rate}, normal, true},           // there is no limit going up
        {{1, highest_rate}, 0, true},
    };
    for (const row& expected : rows) {
        EXPECT_EQ(sinc_resampler::is_feasible(expected.rates.input_hz, expected.rates.output_hz, expected.quality),
                  expected.is_feasible)
            << expected.rates << ", quality " << expected.quality;
        if (!expected.is_feasible) {
            EXPECT_EQ(make(expected.rates, 1, expected.quality), nullptr) << expected.rates;
        }
    }
}

TEST(SincResampler, AStepThatIsRoundedToNothingMakesNoConverter) {
    EXPECT_NE(make({1, 33'554'432}, 1, normal), nullptr); // 2^24 / 2^25 is 0.5, which is rounded to 1
    EXPECT_EQ(make({1, 33'554'433}, 1, normal), nullptr);
    EXPECT_NE(make({1, 8'388'608}, 1, 0), nullptr); // 2^22 / 2^23
    EXPECT_EQ(make({1, 8'388'609}, 1, 0), nullptr);
    EXPECT_EQ(make({1, 0xFFFFFFFF}, 1, 4), nullptr);
}

TEST(SincResampler, MemoryThatCannotBeHadMakesNoConverter) {
    constexpr std::uint32_t too_many_channels = 0xFFFFFFFF;
    EXPECT_EQ(make({255'000, 1000}, too_many_channels, 4), nullptr); // a petabyte
}

/// Output frame k stands at k x step; it is due when no more than the frames so far lie before it.
std::size_t frames_due(std::uint64_t input_frames, std::uint64_t step, std::uint64_t one_frame) {
    std::size_t due = 0;
    while (due * step < (input_frames + 1) * one_frame) {
        ++due;
    }
    return due;
}

TEST(SincResampler, TheFirstFramesAreWithheld) {
    random_source random(5);
    struct row {
        rate_pair rates;
        std::uint32_t quality;
        std::uint64_t one_frame;
        std::uint64_t step;
    };
    const row rows[] = {
        {{44100, 48000}, normal, 1U << 24U, 15'414'067}, // 2^24 x 44100 / 48000 = 15414067.2
        {{48000, 44100}, 4, 1U << 24U, 18'260'933},      // 18260932.9
        {{44100, 44100}, 3, 1U << 24U, 1U << 24U},       {{96000, 8000}, 0, 1U << 22U, 50'331'648}, // 12 x 2^22
        {{8000, 192000}, 1, 1U << 22U, 174'763},                                                    // 174762.7
    };
    for (const row& expected : rows) {
        for (const std::size_t frames : {1U, 2U, 15U, 16U, 100U, 1024U, 3000U}) {
            const std::size_t due = frames_due(frames, expected.step, expected.one_frame);
            const std::size_t withheld = std::min<std::size_t>(due, sinc_qualities[expected.quality].sidelobes);
            const std::vector<double> in = noise(random, frames, 1.0);
            EXPECT_EQ(converted(*make(expected.rates, 1, expected.quality), in, 1).size(), due - withheld)
                << expected.rates << ", quality " << expected.quality << ", " << frames << " frames";
        }
    }
}

TEST(SincResampler, TheRoomIsThatOfAllStepsBeforeTheEndOfOneFrameMore) {
    struct row {
        rate_pair rates;
        std::uint32_t quality;
        std::uint64_t frames;
        std::uint64_t room_frames;
    };
    const row rows[] = {
        {{44100, 48000}, normal, 0, 2},          // 1.09
        {{44100, 48000}, normal, 1023, 1115},    // 1024 x 2^24 / 15414067 = 1114.6
        {{384000, 1501}, normal, 1023, 5},       // 4.003
        {{44100, 44100}, 3, 1023, 1024},         // just at the end
        {{1, 3652}, 0, 1, 7308},                 // 2 x 2^22 / 1148 = 7307.2, and the step is rounded from 1148.5
        {{1, 11'184'811}, normal, 1, 1U << 25U}, // a step of 1.49999, which is rounded to 1
        {{44100, 44100}, normal, (std::uint64_t{1} << 39U) - 1, std::uint64_t{1} << 39U},
    };
    for (const row& expected : rows) {
        EXPECT_EQ(make(expected.rates, 1, expected.quality)->output_room(expected.frames), expected.room_frames)
            << expected.rates << ", quality " << expected.quality << ", " << expected.frames << " frames";
    }
}

TEST(SincResampler, AFirstCallAtAHighRatioFillsTheRoomButForWhatIsWithheld) {
    for (const std::size_t frames : {1U, 2U, 5U}) {
        const std::vector<double> in(frames, 1.0);
        const auto converter = make({1, 3652}, 1, 0);
        const std::size_t room = converter->output_room(frames);
        EXPECT_EQ(converted(*converter, in, 1).size(), room - 2) << frames << " frames";
    }
}

TEST(SincResampler, TimeDoesNotWrapAtTheLongestStep) {
    random_source random(6);
    const rate_pair rates{384000, 1501};
    const std::vector<double> in = noise(random, 20'000, 1.0);
    const std::vector<double> out = converted(*make(rates, 1, normal), in, 1);
    EXPECT_EQ(out.size(), frames_due(20'000, 4'292'105'916, 1U << 24U) - 8); // 2^24 x 384000 / 1501 = 4292105916.1
    EXPECT_EQ(bits_of(out), bits_of(make_literal(rates, 1, normal).process(in)));
}

TEST(SincResampler, AnUnknownQualityIsNormal) {
    random_source random(7);
    const std::vector<double> in = noise(random, 2000, 1.0);
    const rate_pair rates{44100, 48000};
    for (const std::uint32_t quality : {5U, 7U, 0xFFFFFFFFU}) {
        EXPECT_EQ(bits_of(converted(*make(rates, 2, quality), in, 2)),
                  bits_of(converted(*make(rates, 2, normal), in, 2)))
            << quality;
    }
}

/// The filter of "Normal" at equal rates, `frames` from its middle.
double normal_filter_at(double frames) {
    const double place = frames / 8.0;
    const double angle = std::numbers::pi * 0.825 * frames;
    const double sinc = frames == 0.0 ? 1.0 : std::sin(angle) / angle;
    return 0.825 * sinc * std::cyl_bessel_i(0.0, 5.5 * std::sqrt(1.0 - place * place)) / std::cyl_bessel_i(0.0, 5.5);
}

TEST(SincResampler, AtEqualRatesOnlyTheFilterIsHeard) {
    std::vector<double> in(200);
    in[50] = 1.0;
    const std::vector<double> out = converted(*make({44100, 44100}, 1, normal), in, 1);
    ASSERT_EQ(out.size(), 200U + 1 - 8); // one frame is due before the first is in, and eight are withheld
    for (std::size_t i = 0; i < out.size(); ++i) {
        // The delay of 8 frames is withheld; the frame before the first is left.
        const double frames = static_cast<double>(i) - 51.0;
        const double expected = frames >= -8.0 && frames < 8.0 ? normal_filter_at(frames) : 0.0;
        EXPECT_NEAR(out[i], expected, 1e-6) << i;
    }
}

TEST(SincResampler, NoFramesChangeNothing) {
    random_source random(8);
    const std::vector<double> in = noise(random, 3000, 1.0);
    const auto converter = make({44100, 48000}, 1, normal);
    const auto disturbed = make({44100, 48000}, 1, normal);
    EXPECT_EQ(disturbed->process({}, {}), 0U);
    const auto lengths = std::vector<std::size_t>{0, 1, 0, 0, 1500, 0, 1499, 0};
    EXPECT_EQ(bits_of(converted(*disturbed, in, 1, lengths)), bits_of(converted(*converter, in, 1)));
}

/// At 16384 output frames to the input frame four of them fall into each of the 4096 phases of the short filters, and
/// 64 into each of the 256 of "Normal".
TEST(SincResampler, OnlyTheKaiserLevelsGoBetweenThePhases) {
    random_source random(9);
    const std::vector<double> in = noise(random, 40, 1.0);
    const std::vector<double> plain = converted(*make({1, 16384}, 1, 0), in, 1);
    const std::vector<double> interpolated = converted(*make({1, 16384}, 1, normal), in, 1);
    std::size_t plain_steps = 0;
    std::size_t interpolated_steps = 0;
    for (std::size_t i = 327'680; i < 491'520; ++i) { // the 20th to the 30th input frame
        const bool is_new_phase = (i + sinc_qualities[0].sidelobes) % 4 == 0;
        ASSERT_TRUE(is_new_phase || plain[i] == plain[i - 1]) << i;
        plain_steps += static_cast<std::size_t>(plain[i] != plain[i - 1]);
        interpolated_steps += static_cast<std::size_t>(interpolated[i] != interpolated[i - 1]);
    }
    EXPECT_GT(plain_steps, 10U * 4096 * 9 / 10);
    EXPECT_GT(interpolated_steps, 10U * 16384 * 9 / 10);
}

TEST(SincResampler, StrangeSamplesLeaveWithTheWindow) {
    random_source random(10);
    for (const double strange : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}) {
        std::vector<double> in = noise(random, 4000, 1.0);
        const std::vector<double> clean = converted(*make({48000, 48000}, 1, 3), in, 1);
        in[1500] = strange;
        const std::vector<double> out = converted(*make({48000, 48000}, 1, 3), in, 1);
        ASSERT_EQ(out.size(), clean.size());
        for (std::size_t i = 0; i < out.size(); ++i) {
            // The frame enters the window of 64 behind it; 32 output frames are withheld, and one is out before it.
            const bool is_heard = i + 32 > 1500 && i + 32 <= 1500 + 64;
            ASSERT_TRUE(is_heard || out[i] == clean[i]) << strange << " at frame " << i;
        }
    }
}

/// How far what is not the sine lies below it, the sine being found by least squares at its frequency.
double signal_to_noise_db(const std::vector<double>& signal, double cycles_per_frame) {
    const std::vector<double> s = sine(cycles_per_frame, signal.size(), 0.0);
    const std::vector<double> c = sine(cycles_per_frame, signal.size(), 0.25);
    const auto product = [](const std::vector<double>& a, const std::vector<double>& b) {
        return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
    };
    const double determinant = product(c, c) * product(s, s) - product(c, s) * product(c, s);
    const double of_c = (product(signal, c) * product(s, s) - product(signal, s) * product(c, s)) / determinant;
    const double of_s = (product(signal, s) * product(c, c) - product(signal, c) * product(c, s)) / determinant;
    std::vector<double> noise = signal;
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] -= of_c * c[i] + of_s * s[i];
    }
    return 10.0 * std::log10(product(signal, signal) / product(noise, noise));
}

TEST(SincResampler, SignalToNoise) {
    struct row {
        std::uint32_t quality;
        double at_1_khz_db;
        double at_10_khz_db;
    };
    // Measured on an independent model of the method.
    const row rows[] = {
        {0, 44.7, 32.5}, {1, 57.2, 55.3}, {2, 66.5, 68.0}, {3, 123.9, 124.4}, {4, 129.6, 129.1},
    };
    for (const row& expected : rows) {
        for (const auto& [frequency_hz, db] :
             {std::pair(1000.0, expected.at_1_khz_db), {10000.0, expected.at_10_khz_db}}) {
            const std::vector<double> in = sine(frequency_hz / 44100.0, 50'000, 0.0);
            std::vector<double> out = converted(*make({44100, 48000}, 1, expected.quality), in, 1);
            out.erase(out.begin(), out.begin() + 2000);
            const double one_frame = expected.quality < 2 ? 0x1p22 : 0x1p24;
            const double step_frames = std::floor(one_frame * 44100.0 / 48000.0 + 0.5) / one_frame;
            EXPECT_NEAR(signal_to_noise_db(out, frequency_hz / 44100.0 * step_frames), db, 0.5)
                << sinc_qualities[expected.quality].name << " at " << frequency_hz << " Hz";
        }
    }
}

} // namespace
} // namespace kelvane
