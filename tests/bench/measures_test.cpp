// The measurements of the converters, on signals and converters whose figures follow by hand.
#include "bench/measure/latency.h"
#include "bench/measure/quality.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <numbers>
#include <span>
#include <stdexcept>
#include <vector>

namespace {

using namespace bench;

constexpr conversion up{44100, 48000, 1};
constexpr conversion down{48000, 44100, 1};

double decibels(double factor) {
    return 20.0 * std::log10(factor);
}

std::vector<double> sine(double cycles_per_frame, double amplitude, std::size_t frames) {
    std::vector<double> made(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double cycles = std::fmod(cycles_per_frame * static_cast<double>(i), 1.0);
        made[i] = amplitude * std::sin(2.0 * std::numbers::pi * cycles);
    }
    return made;
}

std::vector<double> sum(std::vector<double> a, const std::vector<double>& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] += b[i];
    }
    return a;
}

/// Independent of one another, of both signs, and all of one size: the power is the size squared.
std::vector<double> coin_tosses(double size, std::size_t frames) {
    std::vector<double> made(frames);
    std::uint64_t state = 1;
    for (double& sample : made) {
        state = state * 6364136223846793005 + 1442695040888963407;
        sample = (state >> 63) == 0 ? size : -size;
    }
    return made;
}

/// The tone behind a filter of this response, by frequency.
tone_path filtered(double (*response)(double)) {
    return [response](const conversion& rates, double frequency_hz, std::size_t frames) {
        return sine(frequency_hz / rates.output_hz, tone_amplitude * response(frequency_hz), frames);
    };
}

/// Gives out what went in: once `least + step` frames are there, all but the newest `least`.
class holding_converter final : public converter {
public:
    holding_converter(std::size_t least, std::size_t step) : least_(least), step_(step) {}

    void load(std::span<const double> interleaved) override {
        held_.insert(held_.end(), interleaved.begin(), interleaved.end());
    }
    std::size_t run() override {
        const std::size_t count = held_.size() < least_ + step_ ? 0 : held_.size() - least_;
        const auto end = held_.begin() + static_cast<std::ptrdiff_t>(count);
        out_.assign(held_.begin(), end);
        held_.erase(held_.begin(), end);
        return count;
    }
    std::vector<double> output() const override { return out_; }

private:
    std::size_t least_;
    std::size_t step_;
    std::vector<double> held_;
    std::vector<double> out_;
};

converter_kind holding(std::size_t least, std::size_t step) {
    return {"holding", "converter",
            [=](const conversion&) { return std::make_unique<holding_converter>(least, step); }};
}

TEST(Tone, SignalToNoiseIsThatOfNoiseOfKnownPower) {
    for (const double noise : {1e-1, 1e-3, 1e-6, 1e-9}) {
        const std::vector<double> signal = sum(sine(0.02, 0.5, 50'000), coin_tosses(noise, 50'000));
        EXPECT_NEAR(measure_tone(signal, 0.02).signal_to_noise_db, decibels(0.5 / std::sqrt(2.0) / noise), 0.01)
            << noise;
    }
}

TEST(Tone, AnotherToneIsNoise) {
    const std::vector<double> signal = sum(sine(0.02, 0.5, 50'000), sine(0.3, 0.5e-7, 50'000));
    EXPECT_NEAR(measure_tone(signal, 0.02).signal_to_noise_db, 140.0, 0.01);
}

TEST(Tone, OfAClockALittleOffIsFoundWhole) {
    for (const double off : {-1e-6, 1e-8, 1e-7, 1e-6}) {
        const tone found = measure_tone(sine(0.02 * (1.0 + off), 0.5, 50'000), 0.02);
        EXPECT_NEAR(found.amplitude, 0.5, 1e-9) << off;
        EXPECT_GT(found.signal_to_noise_db, 200.0) << off;
    }
}

TEST(Tone, AmplitudesAreFoundBesideALouderTone) {
    const std::vector<double> signal = sum(sine(0.43, 0.9, 50'000), sine(0.47, 1e-9, 50'000));
    EXPECT_NEAR(decibels(amplitude_beside(signal, 0.47, 0.43)), -180.0, 0.01);
    EXPECT_NEAR(amplitude_at(signal, 0.43), 0.9, 1e-6);
}

TEST(Tone, TheMeasurementSeesFurtherThanAnyConverterGoes) {
    for (const double hz : {997.0, 15000.0}) {
        EXPECT_GT(signal_to_noise_db(ideal_path(), up, hz), 220.0) << hz;
    }
    EXPECT_GT(image_attenuation_db(ideal_path(), up, 21500.0), 250.0);
    EXPECT_EQ(alias_attenuation_db(ideal_path(), down, 21500.0), std::numeric_limits<double>::infinity());
}

TEST(Edge, IsThatOfAFilterOfTheFirstOrder) {
    constexpr double corner_hz = 8000.0;
    const auto response = [](double hz) { return 1.0 / std::sqrt(1.0 + hz / corner_hz * (hz / corner_hz)); };
    const double reference = response(997.0);
    for (const double fallen_db : {0.1, 3.0, 6.0}) {
        const double fallen_to = reference * std::pow(10.0, -fallen_db / 20.0);
        const double expected_hz = corner_hz * std::sqrt(1.0 / (fallen_to * fallen_to) - 1.0);
        EXPECT_NEAR(edge_hz(filtered(response), up, fallen_db), expected_hz, 0.5) << fallen_db;
    }
}

TEST(Edge, IsTheLowestOfSeveral) {
    const auto response = [](double hz) { return hz > 5000.0 && hz < 6000.0 ? 0.5 : 1.0; };
    EXPECT_NEAR(edge_hz(filtered(response), up, 0.1), 5000.0, 0.5);
}

TEST(Edge, IsFoundCloseToHalfTheInputRateAndNotBeyond) {
    const auto response = [](double hz) { return hz < 22040.0 ? 1.0 : 0.5; };
    EXPECT_NEAR(edge_hz(filtered(response), up, 3.0), 22040.0, 0.5);
    EXPECT_TRUE(std::isnan(edge_hz(filtered(response), up, 7.0)));
    EXPECT_TRUE(std::isnan(edge_hz(ideal_path(), up, 0.1)));
}

TEST(Attenuation, OfAnImageIsRelativeToTheToneThatWentIn) {
    const tone_path with_image = [](const conversion& rates, double frequency_hz, std::size_t frames) {
        const double image_hz = rates.input_hz - frequency_hz;
        return sum(sine(frequency_hz / rates.output_hz, 0.1 * tone_amplitude, frames),
                   sine(image_hz / rates.output_hz, 1e-5 * tone_amplitude, frames));
    };
    EXPECT_NEAR(image_attenuation_db(with_image, up, 20500.0), 100.0, 0.01);
}

TEST(Attenuation, OfAnAliasIsRelativeToTheToneThatWentIn) {
    const tone_path with_alias = [](const conversion& rates, double frequency_hz, std::size_t frames) {
        const double alias_hz = rates.output_hz - frequency_hz;
        return sine(alias_hz / rates.output_hz, 1e-5 * tone_amplitude, frames);
    };
    EXPECT_NEAR(alias_attenuation_db(with_alias, down, 20500.0), 100.0, 0.01);
}

TEST(Latency, OfAConverterThatHoldsAlwaysAsMuch) {
    const latency found = measure_latency(holding(441, 1), {44100, 44100, 1});
    EXPECT_NEAR(found.least_s, 0.010, 1e-9);
    EXPECT_NEAR(found.most_s, 0.010, 1e-9);
}

/// With every fourth block of 1024 frames 4096 come out: 441 stay, and up to three blocks more.
TEST(Latency, OfAConverterThatWorksInSteps) {
    const latency found = measure_latency(holding(441, 3073), {44100, 44100, 1});
    EXPECT_NEAR(found.least_s, 0.010, 1e-9);
    EXPECT_NEAR(found.most_s, (441.0 + 3072.0) / 44100.0, 1e-9);
}

TEST(PathThrough, GivesTheSteadyStateAndRefusesToGoWithout) {
    const conversion rates{44100, 44100, 1};
    const std::vector<double> out = path_through(holding(4410, 1))(rates, 997.0, 10'000);
    ASSERT_EQ(out.size(), 10'000U);
    EXPECT_NEAR(measure_tone(out, 997.0 / 44100.0).amplitude, tone_amplitude, 1e-9);
    EXPECT_NEAR(out[0], tone_amplitude * std::sin(2.0 * std::numbers::pi * 0.2 * 997.0), 1e-6);
    EXPECT_THROW(path_through(holding(44100, 1))(rates, 997.0, 10'000), std::runtime_error);
}

} // namespace
