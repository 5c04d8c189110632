// What a listener would notice of the resampler: where sounds stand in time, and how streams start and end.
#include "effects/resampler_sinc/sinc_quality_core.h"
#include "tests/module/run_effect.h"
#include "tests/module/sinc_preset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

struct rate_pair {
    std::uint32_t input_hz;
    std::uint32_t target_hz;

    double ratio() const { return static_cast<double>(target_hz) / input_hz; }
};

std::vector<double> resample(const rate_pair& rates, std::uint32_t quality, const std::vector<double>& mono) {
    random_source random(1);
    const auto effect = make_sinc(rates.target_hz, quality);
    const programme out =
        play(*effect, {{{rates.input_hz, 1, 0x4}, mono}}, {4096, 1}, velmora::run_flag::end_of_playback, random);
    return out.empty() ? std::vector<double>() : out[0].samples;
}

template <class Signal>
std::vector<double> sampled(Signal signal, std::uint32_t rate_hz, double duration_s) {
    std::vector<double> samples(static_cast<std::size_t>(duration_s * rate_hz));
    for (std::size_t n = 0; n < samples.size(); ++n) {
        samples[n] = signal(static_cast<double>(n) / rate_hz);
    }
    return samples;
}

/// The middle of the energy, in samples.
double centre_of(const std::vector<double>& samples) {
    double moment = 0.0;
    double energy = 0.0;
    for (std::size_t n = 0; n < samples.size(); ++n) {
        moment += static_cast<double>(n) * samples[n] * samples[n];
        energy += samples[n] * samples[n];
    }
    return moment / energy;
}

/// 9000 samples with a click that has no more high frequencies than a converter passes, so that its middle is exact.
std::vector<double> pulse_at(std::size_t place) {
    constexpr double width = 4.0;
    std::vector<double> samples(9000);
    for (std::size_t n = 0; n < samples.size(); ++n) {
        const double away = (static_cast<double>(n) - static_cast<double>(place)) / width;
        samples[n] = std::exp(-away * away / 2.0);
    }
    return samples;
}

/// How late a known signal is heard, in samples: where it is most like the signal.
template <class Signal>
double delay_of(Signal signal, const std::vector<double>& heard, std::uint32_t rate_hz) {
    constexpr double widest = 6.0;
    constexpr double step = 0.02;
    double best = 0.0;
    double most = -1.0;
    for (double delay = -widest; delay <= widest; delay += step) {
        double likeness = 0.0;
        for (std::size_t n = heard.size() / 4; n < heard.size() * 3 / 4; ++n) {
            likeness += heard[n] * signal((static_cast<double>(n) - delay) / rate_hz);
        }
        if (likeness > most) {
            most = likeness;
            best = delay;
        }
    }
    return best;
}

/// From 100 Hz up by 10 kHz a second.
double chirp(double time_s) {
    return 0.8 * std::sin(2.0 * std::numbers::pi * (100.0 * time_s + 5000.0 * time_s * time_s));
}

constexpr double held_frames = 1024.0;

/// How late the stream is heard, in output frames. The converter's window is centred `taps` ÷ 2 input frames back, and
/// its first output lies one step before the first input; as many output frames as the level has sidelobes are skipped.
/// The rest is what is discarded in whole frames: the pre-roll, and going up the window's delay.
double expected_delay(const rate_pair& rates, std::uint32_t quality) {
    const double ratio = rates.ratio();
    const double sidelobes = kelvane::sinc_qualities[quality].sidelobes;
    const double taps = std::ceil(2.0 * sidelobes / std::min(ratio, 1.0) / 4.0) * 4.0;
    const double delay = taps / 2.0 * ratio + ratio - sidelobes;
    const double discarded = ratio > 1.0 ? std::floor(delay) : 0.0;
    const double pre_roll = held_frames * ratio;
    return delay - discarded + (pre_roll - std::floor(pre_roll + 0.5));
}

struct aligned_pair {
    rate_pair rates;
    double latest_frames; ///< of the output
};

/// Half an output frame at the rates that meet most often, half an input frame going up, and nothing where the ratio is
/// whole.
const std::vector<aligned_pair> aligned_pairs{
    {{44100, 48000}, 0.5},  {{44100, 88200}, 0.05},  {{22050, 44100}, 0.05}, {{44100, 96000}, 1.09},
    {{22050, 48000}, 1.09}, {{44100, 192000}, 2.17}, {{8000, 44100}, 2.76},  {{48000, 44100}, 2.5},
};

void expect_delay(const aligned_pair& pair, std::uint32_t quality, double late) {
    const auto& [rates, latest_frames] = pair;
    const auto what = std::to_string(rates.input_hz) + " to " + std::to_string(rates.target_hz) + ", quality " +
                      std::to_string(quality);
    EXPECT_LT(std::fabs(late), latest_frames) << what;
    EXPECT_NEAR(late, expected_delay(rates, quality), 0.05) << what;
}

TEST(SincListening, AnImpulseComesOutWhereItBelongs) {
    for (const aligned_pair& pair : aligned_pairs) {
        for (std::uint32_t quality = 0; quality < 5; ++quality) {
            for (const std::size_t place : {100U, 1500U, 5001U, 8900U}) {
                const double heard_at = centre_of(resample(pair.rates, quality, pulse_at(place)));
                expect_delay(pair, quality, heard_at - static_cast<double>(place) * pair.rates.ratio());
            }
        }
    }
}

TEST(SincListening, AChirpComesOutWhereItBelongs) {
    for (const aligned_pair& pair : aligned_pairs) {
        for (std::uint32_t quality = 0; quality < 5; ++quality) {
            const auto heard = resample(pair.rates, quality, sampled(chirp, pair.rates.input_hz, 0.2));
            expect_delay(pair, quality, delay_of(chirp, heard, pair.rates.target_hz));
        }
    }
}

/// Full-level chords of decaying and steady partials, with a little noise.
std::vector<double> music(std::uint32_t rate_hz, std::size_t frames) {
    random_source random(7);
    std::vector<double> samples = noise(random, frames, 0.01);
    for (const double partial_hz :
         {82.4, 164.8, 220.0, 277.2, 329.6, 440.0, 554.4, 659.3, 880.0, 1318.5, 2637.0, 5274.0}) {
        for (std::size_t n = 0; n < frames; ++n) {
            const double time_s = static_cast<double>(n) / rate_hz;
            const double tremolo = 1.0 + 0.2 * std::sin(2.0 * std::numbers::pi * 3.1 * time_s + partial_hz);
            samples[n] += tremolo * 40.0 / (40.0 + partial_hz) *
                          std::sin(2.0 * std::numbers::pi * partial_hz * time_s + partial_hz * partial_hz);
        }
    }
    const double peak = std::fabs(*std::max_element(samples.begin(), samples.end(),
                                                    [](double a, double b) { return std::fabs(a) < std::fabs(b); }));
    for (double& sample : samples) {
        sample /= peak;
    }
    return samples;
}

double level_db(std::span<const double> samples) {
    double energy = 0.0;
    for (const double sample : samples) {
        energy += sample * sample;
    }
    return 10.0 * std::log10(energy / static_cast<double>(samples.size()));
}

double largest_difference(std::span<const double> a, std::span<const double> b) {
    double largest = 0.0;
    for (std::size_t n = 0; n < a.size(); ++n) {
        largest = std::max(largest, std::fabs(a[n] - b[n]));
    }
    return largest;
}

/// Compares a stream with the same audio out of the middle of a longer one.
void expect_clean_edges(std::span<const double> heard, std::span<const double> expected, std::uint32_t rate_hz) {
    ASSERT_EQ(heard.size(), expected.size());
    const std::size_t edge = rate_hz / 50; // 20 ms
    const std::size_t middle = heard.size() - 2 * edge;
    EXPECT_LT(largest_difference(heard.first(edge), expected.first(edge)), 0.05);
    EXPECT_LT(largest_difference(heard.last(edge), expected.last(edge)), 0.05);
    EXPECT_LT(largest_difference(heard.subspan(edge, middle), expected.subspan(edge, middle)), 2e-4);
    for (const std::size_t part : {rate_hz / 1000, rate_hz / 200, rate_hz / 50}) {
        EXPECT_NEAR(level_db(heard.first(part)), level_db(expected.first(part)), 0.1) << part;
        EXPECT_NEAR(level_db(heard.last(part)), level_db(expected.last(part)), 0.1) << part;
    }
}

TEST(SincListening, AStreamStartsAndEndsAsIfItWereTheMiddleOfALongerOne) {
    for (const rate_pair& rates : std::vector<rate_pair>{
             {44100, 48000}, {44100, 88200}, {22050, 44100}, {48000, 44100}, {88200, 48000}, {96000, 48000}}) {
        // Cut where input and output frames meet.
        const std::size_t tenth_in = rates.input_hz / 10;
        const std::size_t tenth_out = rates.target_hz / 10;
        const auto whole = music(rates.input_hz, 10 * tenth_in);
        for (std::uint32_t quality = 0; quality < 5; ++quality) {
            const auto longer = resample(rates, quality, whole);
            for (std::size_t tenth = 2; tenth < 8; ++tenth) {
                SCOPED_TRACE(std::to_string(rates.input_hz) + " to " + std::to_string(rates.target_hz) + ", quality " +
                             std::to_string(quality) + ", tenth " + std::to_string(tenth));
                const auto cut = std::span(whole).subspan(tenth * tenth_in, tenth_in);
                const auto heard = resample(rates, quality, {cut.begin(), cut.end()});
                expect_clean_edges(heard, std::span(longer).subspan(tenth * tenth_out, tenth_out), rates.target_hz);
            }
        }
    }
}

} // namespace
