#include "effects/resampler_ssrc/ssrc_converter.h"

#include "tests/resampler_ssrc/conversions.h"
#include "tests/resampler_ssrc/plain_filters.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <set>
#include <vector>

namespace kelvane::ssrc {
namespace {

using namespace testing_support;

constexpr rate_pair up_pair{44100, 48000};
constexpr rate_pair down_pair{48000, 44100};

std::uint64_t promised_frames(const rate_pair& rates, std::uint64_t frames) {
    return frames * rates.output_hz / rates.input_hz;
}

TEST(Converter, RefusesWhatItCannotConvert) {
    struct row {
        const char* name;
        wave_format format;
        std::uint32_t output_hz;
        converter_quality quality;
    };
    wave_format no_samples = float64_format(44100, 2);
    no_samples.bits_per_sample = 4;
    converter_quality no_taps = usual_quality;
    no_taps.up_filter_taps = 0;
    converter_quality no_band = usual_quality;
    no_band.transition_band_hz = 0;
    for (const row& refused :
         {row{"ratio", float64_format(48000, 2), 35000, usual_quality},
          row{"ratio up", float64_format(35000, 2), 48000, usual_quality},
          row{"common rate", float64_format(44740, 2), 48001, usual_quality},
          row{"no output rate", float64_format(48000, 2), 0, usual_quality},
          row{"no input rate", float64_format(0, 2), 48000, usual_quality},
          row{"no channels", float64_format(44100, 0), 48000, usual_quality},
          row{"no samples", no_samples, 48000, usual_quality}, row{"no taps", float64_format(44100, 2), 48000, no_taps},
          row{"no band", float64_format(44100, 2), 48000, no_band}}) {
        ssrc_converter converter = make_converter(up_pair);
        EXPECT_FALSE(converter.set_up(refused.format, refused.output_hz, refused.quality)) << refused.name;
        EXPECT_FALSE(converter.process({}, true)) << refused.name << " left something behind";
    }
}

TEST(Converter, SaysBeforehandWhatASetUpWillSay) {
    random_source random(1);
    std::vector<rate_pair> pairs{{0, 44100},     {44100, 0},      {44100, 44100},
                                 {48000, 35000}, {12000, 352800}, {44100, 48000}};
    for (int i = 0; i < 20; ++i) {
        pairs.push_back({static_cast<std::uint32_t>(pick(random, 40, 200) * 100),
                         static_cast<std::uint32_t>(pick(random, 40, 200) * 100)});
    }
    std::set<bool> answers;
    for (const rate_pair& rates : pairs) {
        ssrc_converter converter;
        const bool is_set_up = converter.set_up(float64_format(rates.input_hz, 1), rates.output_hz, usual_quality);
        EXPECT_EQ(ssrc_converter::is_conversion_supported(rates.input_hz, rates.output_hz), is_set_up) << rates;
        answers.insert(is_set_up);
    }
    EXPECT_EQ(answers.size(), 2U);
}

TEST(Converter, EqualRatesPassByteForByte) {
    random_source random(2);
    const std::vector<double> samples = noise(random, 600, 2.0);
    for (const std::uint32_t rate_hz : {44100U, 1U, 4000000000U}) {
        const rate_pair rates{rate_hz, rate_hz};
        EXPECT_EQ(bits_of(convert(rates, samples, 3)), bits_of(samples)) << rate_hz;
        EXPECT_EQ(bits_of(convert_in_blocks(rates, samples, 3, {1, 0, 99, 50})), bits_of(samples)) << rate_hz;
    }
}

TEST(Converter, AnEmptyConverterConvertsNothing) {
    ssrc_converter converter;
    EXPECT_FALSE(converter.process({}, false));
    converter = make_converter(up_pair);
    EXPECT_TRUE(converter.process({}, false));
    converter.destroy();
    EXPECT_FALSE(converter.process({}, false));
    EXPECT_TRUE(converter.output().empty());
}

TEST(Converter, PartsOfFramesAreRefusedAndChangeNothing) {
    random_source random(3);
    const std::vector<double> samples = noise(random, 4000, 1.0);
    ssrc_converter converter = make_converter(up_pair, 2);
    const auto bytes = std::as_bytes(std::span(samples));
    EXPECT_FALSE(converter.process(bytes.first(8), false));
    EXPECT_FALSE(converter.process(bytes.first(4001), true));
    EXPECT_EQ(bits_of(process(converter, samples, true)), bits_of(convert(up_pair, samples, 2)));
}

/// Lengths around those at which another block is done, counted by the output that comes.
std::set<std::size_t> lengths_around_block_edges(const rate_pair& rates) {
    ssrc_converter converter = make_converter(rates);
    std::set<std::size_t> lengths;
    constexpr std::size_t most_edges = 3;
    const std::vector<double> frame(1);
    for (std::size_t frames = 1; lengths.size() < 3 * most_edges && frames < 200'000; ++frames) {
        if (!process(converter, frame, false).empty()) {
            lengths.insert({frames - 1, frames, frames + 1});
        }
    }
    return lengths;
}

TEST(Converter, TheOutputIsAsLongAsTheInput) {
    random_source random(4);
    std::vector<rate_pair> pairs = sampled_pairs();
    // High input rates, whose filters hold most at the end.
    pairs.insert(pairs.end(), {{352800, 44100}, {384000, 8000}, {192000, 44100}, {44100, 176400}});
    for (const rate_pair& rates : pairs) {
        std::set<std::size_t> lengths = lengths_around_block_edges(rates);
        EXPECT_GE(lengths.size(), 9U) << rates;
        for (std::size_t frames = 0; frames <= 50; ++frames) {
            lengths.insert(frames);
        }
        for (int i = 0; i < 200; ++i) {
            lengths.insert(pick(random, 51, 20'000));
        }
        ssrc_converter converter = make_converter(rates);
        const std::vector<double> samples = noise(random, *lengths.rbegin(), 1.0);
        for (const std::size_t frames : lengths) {
            const std::size_t made = process(converter, std::span(samples).first(frames), true).size();
            ASSERT_EQ(made, promised_frames(rates, frames)) << rates << ", " << frames << " frames";
        }
    }
}

/// A frame of so low a rate lasts longer than the filters' delay.
constexpr rate_pair lowest_pairs[] = {{48000, 1}, {44100, 1}, {48000, 2}};

TEST(Converter, TheOutputIsAsLongAsTheInputAtTheLowestRates) {
    const std::vector<double> samples(150'000, 0.5);
    for (const rate_pair& rates : lowest_pairs) {
        ssrc_converter converter = make_converter(rates);
        for (const std::size_t frames : {1U, 8191U, 8192U, 22049U, 22050U, 24000U, 44099U, 44100U, 47999U, 48000U,
                                         49152U, 95999U, 96000U, 150'000U}) {
            const std::size_t at_once = process(converter, std::span(samples).first(frames), true).size();
            EXPECT_EQ(at_once, promised_frames(rates, frames)) << rates << ", " << frames << " frames";
            const std::size_t before_end = process(converter, std::span(samples).first(frames), false).size();
            const std::size_t at_end = process(converter, {}, true).size();
            EXPECT_EQ(before_end + at_end, at_once) << rates << ", " << frames << " frames and then the end";
        }
    }
}

TEST(Converter, AnyCuttingIntoBlocksGivesTheSameBits) {
    random_source random(5);
    std::vector<rate_pair> pairs = sampled_pairs();
    pairs.push_back({384000, 8000});
    for (const rate_pair& rates : pairs) {
        constexpr std::size_t frames = 20'000;
        const std::vector<double> samples = noise(random, 2 * frames, 1.0);
        const auto expected = bits_of(convert(rates, samples, 2));
        for (const std::size_t longest : {std::size_t{7}, std::size_t{500}, std::size_t{9000}}) {
            EXPECT_EQ(bits_of(convert_in_blocks(rates, samples, 2, split(random, frames, longest))), expected)
                << rates << ", blocks to " << longest;
        }
    }
}

TEST(Converter, FramesHeldBackAtTheLowestRatesComeOutLater) {
    random_source random(13);
    constexpr std::size_t frames = 150'000;
    const std::vector<double> samples = noise(random, 2 * frames, 1.0);
    for (const rate_pair& rates : lowest_pairs) {
        const std::vector<double> expected = convert(rates, samples, 2);
        ASSERT_EQ(expected.size(), 2 * promised_frames(rates, frames)) << rates;
        for (const std::size_t longest : {std::size_t{500}, std::size_t{9000}, std::size_t{60'000}}) {
            EXPECT_EQ(bits_of(convert_in_blocks(rates, samples, 2, split(random, frames, longest))), bits_of(expected))
                << rates << ", blocks to " << longest;
        }
    }
}

TEST(Converter, FrameByFrameGivesTheSameBits) {
    random_source random(6);
    const std::vector<double> samples = noise(random, 12'000, 1.0);
    for (const rate_pair& rates : {up_pair, down_pair}) {
        EXPECT_EQ(bits_of(convert_in_blocks(rates, samples, 1, std::vector<std::size_t>(12'000, 1))),
                  bits_of(convert(rates, samples)))
            << rates;
    }
}

/// Channel c of interleaved samples.
std::vector<double> channel_of(const std::vector<double>& samples, std::size_t channel, std::size_t channels) {
    std::vector<double> taken;
    for (std::size_t i = channel; i < samples.size(); i += channels) {
        taken.push_back(samples[i]);
    }
    return taken;
}

TEST(Converter, EachChannelIsConvertedAsIfItWereAlone) {
    random_source random(7);
    const std::vector<double> samples = noise(random, std::size_t{8} * 15'000, 1.0);
    for (const rate_pair& rates : {up_pair, down_pair, rate_pair{96000, 48000}, rate_pair{48000, 96000}}) {
        const std::vector<double> together = convert(rates, samples, 8);
        for (std::size_t channel = 0; channel < 8; ++channel) {
            EXPECT_EQ(bits_of(channel_of(together, channel, 8)),
                      bits_of(convert(rates, channel_of(samples, channel, 8))))
                << rates << ", channel " << channel;
        }
    }
}

TEST(Converter, ASilentChannelStaysSilentAndWhatIsNotANumberStaysInItsChannel) {
    random_source random(8);
    constexpr std::size_t frames = 30'000;
    for (const rate_pair& rates : {up_pair, down_pair}) {
        std::vector<double> samples = noise(random, 3 * frames, 1.0);
        for (std::size_t i = 0; i < frames; ++i) {
            samples[3 * i + 1] = 0.0;
        }
        const auto undisturbed = bits_of(channel_of(convert(rates, samples, 3), 2, 3));
        samples[std::size_t{3} * 100] = std::nan("");
        samples[std::size_t{3} * 200] = std::numeric_limits<double>::infinity();
        const std::vector<double> output = convert(rates, samples, 3);
        const std::vector<double> silent = channel_of(output, 1, 3);
        EXPECT_TRUE(std::all_of(silent.begin(), silent.end(), [](double sample) { return sample == 0.0; })) << rates;
        EXPECT_EQ(bits_of(channel_of(output, 2, 3)), undisturbed) << rates;
        const std::vector<double> hurt = channel_of(output, 0, 3);
        EXPECT_TRUE(std::any_of(hurt.begin(), hurt.end(), [](double sample) { return std::isnan(sample); })) << rates;
        EXPECT_TRUE(std::none_of(hurt.end() - 5000, hurt.end(), [](double sample) { return std::isnan(sample); }))
            << rates << ": it goes on for ever";
    }
}

TEST(Converter, AfterTheEndAnotherStreamBegins) {
    random_source random(9);
    const std::vector<double> first = noise(random, 9'000, 1.0);
    const std::vector<double> second = noise(random, 7'001, 1.0);
    for (const rate_pair& rates : {up_pair, down_pair}) {
        ssrc_converter converter = make_converter(rates);
        process(converter, first, true);
        EXPECT_EQ(bits_of(process(converter, second, true)), bits_of(convert(rates, second))) << rates;
        EXPECT_TRUE(process(converter, {}, true).empty()) << rates;
    }
}

TEST(Converter, ASetUpForgetsTheStreamBefore) {
    random_source random(10);
    const std::vector<double> samples = noise(random, 9'000, 1.0);
    ssrc_converter converter = make_converter(up_pair);
    process(converter, samples, false);
    ASSERT_TRUE(converter.set_up(float64_format(48000, 1), 44100, usual_quality));
    EXPECT_EQ(bits_of(process(converter, samples, true)), bits_of(convert(down_pair, samples)));
}

TEST(Converter, AStreamShorterThanTheDelayComesOutAtItsEnd) {
    const std::vector<double> samples(1000, 0.5);
    for (const rate_pair& rates : {up_pair, down_pair}) {
        ssrc_converter converter = make_converter(rates);
        EXPECT_TRUE(process(converter, samples, false).empty()) << rates;
        const std::vector<double> output = process(converter, {}, true);
        ASSERT_EQ(output.size(), rates == up_pair ? 1088U : 918U) << rates; // 1000 x 1.0884 and x 0.91875
        EXPECT_NEAR(output[output.size() / 2], 0.5, 0.05) << rates;
    }
}

TEST(Converter, EveryVectorWidthGivesTheSameBits) {
    if (&best_kernels() == &sse2_kernels()) {
        GTEST_SKIP() << "this processor has one width";
    }
    random_source random(11);
    const std::vector<double> samples = noise(random, 20'000, 1.0);
    for (const rate_pair& rates : sampled_pairs()) {
        ssrc_converter narrow;
        ssrc_converter wide;
        const wave_format format = float64_format(rates.input_hz, 1);
        ASSERT_TRUE(narrow.set_up(format, rates.output_hz, usual_quality, sse2_kernels()));
        ASSERT_TRUE(wide.set_up(format, rates.output_hz, usual_quality, best_kernels()));
        EXPECT_EQ(bits_of(process(narrow, samples, true)), bits_of(process(wide, samples, true))) << rates;
    }
}

struct coded_format {
    const char* name;
    std::uint16_t tag;
    std::uint16_t bits;
    double step; ///< between two neighbouring values near 1
};

constexpr coded_format coded_formats[] = {
    {"integer 8", tag_integer, 8, 1.0 / 128},       {"integer 16", tag_integer, 16, 1.0 / 32768},
    {"integer 24", tag_integer, 24, 1.0 / 8388608}, {"integer 32", tag_integer, 32, 1.0 / 2147483648},
    {"float 32", tag_float, 32, 1.0 / 16777216},    {"float 64", tag_float, 64, 1e-15},
};

TEST(Converter, EverySampleFormatGoesInAndComesOut) {
    random_source random(12);
    const std::vector<double> samples = noise(random, std::size_t{2} * 9'000, 0.4);
    for (const coded_format& coded : coded_formats) {
        wave_format format = float64_format(down_pair.input_hz, 2);
        format.format_tag = coded.tag;
        format.bits_per_sample = coded.bits;
        const sample_code code = sample_code_of(format).value();
        const std::size_t sample_bytes = bytes_per_sample(code);
        std::vector<std::byte> bytes(samples.size() * sample_bytes);
        encode(code, samples.data(), bytes.data(), sample_bytes, samples.size());
        std::vector<double> rounded(samples.size());
        decode(code, bytes.data(), sample_bytes, rounded.data(), samples.size());
        const std::vector<double> expected = convert(down_pair, rounded, 2);

        ssrc_converter converter;
        ASSERT_TRUE(converter.set_up(format, down_pair.output_hz, usual_quality)) << coded.name;
        ASSERT_TRUE(converter.process(bytes, true)) << coded.name;
        ASSERT_EQ(converter.output().size(), expected.size() * sample_bytes) << coded.name;
        std::vector<double> actual(expected.size());
        decode(code, converter.output().data(), sample_bytes, actual.data(), actual.size());
        for (std::size_t i = 0; i < actual.size(); ++i) {
            ASSERT_NEAR(actual[i], expected[i], 0.5 * coded.step * (1.0 + 1e-9)) << coded.name << ", sample " << i;
        }
    }
}

TEST(Converter, LoudIntegersClip) {
    wave_format format = float64_format(up_pair.input_hz, 1);
    format.format_tag = tag_integer;
    format.bits_per_sample = 16;
    std::vector<std::int16_t> square(8000);
    for (std::size_t i = 0; i < square.size(); ++i) {
        square[i] = i / 50 % 2 == 0 ? 32767 : -32768; // its rounded edges overshoot
    }
    ssrc_converter converter;
    ASSERT_TRUE(converter.set_up(format, up_pair.output_hz, usual_quality));
    ASSERT_TRUE(converter.process(std::as_bytes(std::span(square)), true));
    std::vector<std::int16_t> output(converter.output().size() / 2);
    std::memcpy(output.data(), converter.output().data(), converter.output().size());
    EXPECT_GT(std::count(output.begin(), output.end(), 32767), 100);
    EXPECT_GT(std::count(output.begin(), output.end(), -32768), 100);
    for (std::size_t i = 1000; i < 7000; ++i) { // a wrap would put one sign into the other's half wave
        const double phase = std::fmod(static_cast<double>(i) * 44100.0 / 48000.0, 100.0);
        if (phase > 5.0 && phase < 45.0) {
            ASSERT_GT(output[i], 20000) << i;
        } else if (phase > 55.0 && phase < 95.0) {
            ASSERT_LT(output[i], -20000) << i;
        }
    }
}

TEST(Converter, SilenceOf8BitsIsSilent) {
    wave_format format = float64_format(up_pair.input_hz, 1);
    format.format_tag = tag_integer;
    format.bits_per_sample = 8;
    const std::vector<std::byte> silence(5000, std::byte{128});
    ssrc_converter converter;
    ASSERT_TRUE(converter.set_up(format, up_pair.output_hz, usual_quality));
    ASSERT_TRUE(converter.process(silence, true));
    const auto output = converter.output();
    EXPECT_EQ(output.size(), 5442U);
    EXPECT_TRUE(std::all_of(output.begin(), output.end(), [](std::byte value) { return value == std::byte{128}; }));
}

} // namespace
} // namespace kelvane::ssrc
