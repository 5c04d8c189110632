// kelvane-fft-sweep: measures the converter at all pairs of the common rates and a long stream. Prints Markdown.
#include "tests/resampler_ssrc/measurements.h"
#include "tests/support/allocations.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <numbers>
#include <span>
#include <thread>
#include <vector>

namespace {

using namespace testing_support;

constexpr double tone_s = 0.25;
constexpr std::uint32_t tone_hz = 997;
constexpr std::uint32_t tones_over_the_band = 12;
constexpr std::size_t longest_stream_frames = 5000;

struct row {
    double ripple_db = 0.0;
    double noise_997_db = 0.0;
    double noise_15k_db = 0.0; ///< 0 where 15 kHz is not in the band
    double images_db = 0.0;
    double delay_frames = 0.0;
    double asymmetry = 0.0;
    std::size_t wrong_lengths = 0;
};

double worst_image_db(const rate_pair& rates) {
    const std::uint32_t stop_hz = edges_of(rates).stop_hz;
    if (rates.output_hz > rates.input_hz) {
        return std::max(measure_tone(rates, rates.input_hz - stop_hz, tone_s).rest_db,
                        measure_tone(rates, rates.input_hz / 4, tone_s).rest_db);
    }
    const std::uint32_t middle_hz = (stop_hz + rates.input_hz / 2) / 2;
    return std::max(measure_rest_db(rates, stop_hz, tone_s), measure_rest_db(rates, middle_hz, tone_s));
}

double ripple_db(const rate_pair& rates) {
    const std::uint32_t pass_hz = edges_of(rates).pass_hz;
    double worst = 0.0;
    for (std::uint32_t i = 1; i <= tones_over_the_band; ++i) {
        const std::uint32_t frequency_hz = pass_hz * i / tones_over_the_band - (i == tones_over_the_band ? 1 : 0);
        worst = std::max(worst, std::abs(measure_tone(rates, frequency_hz, tone_s).gain_db));
    }
    return worst;
}

std::size_t wrong_lengths(const rate_pair& rates) {
    kelvane::ssrc::ssrc_converter converter = make_converter(rates);
    const std::vector<double> samples(longest_stream_frames);
    std::size_t wrong = 0;
    for (std::size_t frames = 0; frames <= longest_stream_frames; ++frames) {
        const bool is_done = converter.process(std::as_bytes(std::span(samples).first(frames)), true);
        const std::size_t made = converter.output().size() / sizeof(double);
        wrong += is_done && made == frames * rates.output_hz / rates.input_hz ? 0 : 1;
    }
    return wrong;
}

row measure(const rate_pair& rates) {
    row measured;
    const tone_result tone = measure_tone(rates, 997, tone_s);
    measured.noise_997_db = tone.rest_db;
    measured.delay_frames = tone.delay_frames;
    if (edges_of(rates).pass_hz > 15000) {
        measured.noise_15k_db = measure_tone(rates, 15000, tone_s).rest_db;
    }
    measured.ripple_db = ripple_db(rates);
    measured.images_db = worst_image_db(rates);
    measured.asymmetry = measure_impulse(rates).asymmetry;
    measured.wrong_lengths = wrong_lengths(rates);
    return measured;
}

void print(const rate_pair& rates, const row& of) {
    std::printf("| %u | %u | %.1e | %.1f | ", rates.input_hz, rates.output_hz, of.ripple_db, -of.noise_997_db);
    if (of.noise_15k_db < 0.0) {
        std::printf("%.1f", -of.noise_15k_db);
    }
    std::printf(" | %.1f | %.3f | %.1e | %zu |\n", of.images_db, of.delay_frames, of.asymmetry, of.wrong_lengths);
}

void print_all_pairs() {
    const std::vector<rate_pair> pairs = accepted_pairs();
    std::vector<row> rows(pairs.size());
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
        workers.emplace_back([&] {
            for (std::size_t at = next++; at < pairs.size(); at = next++) {
                rows[at] = measure(pairs[at]);
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    std::printf(
        "| from Hz | to Hz | ripple dB | S/N 997 Hz dB | S/N 15 kHz dB | images, aliases dB | delay | asymmetry "
        "| wrong lengths |\n|---|---|---|---|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        print(pairs[i], rows[i]);
    }
}

std::size_t resident_pages() {
    std::ifstream statm("/proc/self/statm");
    std::size_t whole = 0;
    std::size_t resident = 0;
    statm >> whole >> resident;
    return resident;
}

/// The largest difference between the output and the tone that should come out, from the frame `first` on.
double largest_error(std::span<const double> output, std::uint64_t first, const rate_pair& rates, double delay_frames) {
    const double turns_per_frame = static_cast<double>(tone_hz) / rates.output_hz;
    double largest = 0.0;
    for (std::size_t i = 0; i < output.size(); ++i) {
        const double whole = static_cast<double>((first + i) * tone_hz % rates.output_hz) / rates.output_hz;
        const double expected = std::cos(2.0 * std::numbers::pi * (whole - delay_frames * turns_per_frame));
        largest = std::max(largest, std::abs(output[i] - expected));
    }
    return largest;
}

/// A second of a tone again and again: what drifts shows as a difference at the end.
void print_long_stream(const rate_pair& rates) {
    constexpr std::uint64_t total_frames = 100'000'000;
    std::vector<double> second(rates.input_hz);
    for (std::size_t n = 0; n < second.size(); ++n) {
        const double turns = static_cast<double>(n * tone_hz % rates.input_hz) / rates.input_hz;
        second[n] = std::cos(2.0 * std::numbers::pi * turns);
    }
    const double delay_frames = measure_impulse(rates).delay_frames;
    kelvane::ssrc::ssrc_converter converter = make_converter(rates);
    std::uint64_t frames_out = 0;
    std::uint64_t allocations_before = 0;
    std::size_t pages_before = 0;
    std::vector<double> output(2 * std::size_t{rates.output_hz});
    double error = 0.0;
    for (std::uint64_t frames_in = 0; frames_in < total_frames;) {
        const std::size_t frames = std::min<std::uint64_t>(second.size(), total_frames - frames_in);
        converter.process(std::as_bytes(std::span(second).first(frames)), frames_in + frames == total_frames);
        const std::size_t made = converter.output().size() / sizeof(double);
        std::memcpy(output.data(), converter.output().data(), made * sizeof(double));
        // The stream's ends ring.
        const bool is_inside = frames_in > 2 * second.size() && frames_in + 2 * second.size() < total_frames;
        if (is_inside && (frames_in < 12 * second.size() || frames_in + 12 * second.size() > total_frames)) {
            error = std::max(error, largest_error({output.data(), made}, frames_out, rates, delay_frames));
        }
        frames_in += frames;
        frames_out += made;
        if (frames_in == 10 * second.size()) {
            pages_before = resident_pages();
            allocations_before = allocations();
        }
    }
    const std::uint64_t allocations_since = allocations() - allocations_before;
    const long long pages_since = static_cast<long long>(resident_pages()) - static_cast<long long>(pages_before);
    std::printf("%u to %u Hz: %llu frames in, %llu out; since the tenth second %llu allocations and %lld pages more; "
                "largest difference from the tone %.1e\n",
                rates.input_hz, rates.output_hz, static_cast<unsigned long long>(total_frames),
                static_cast<unsigned long long>(frames_out), static_cast<unsigned long long>(allocations_since),
                pages_since, error);
}

} // namespace

int main() {
    print_all_pairs();
    std::printf(
        "\nStreams of 100 million frames of a tone, compared near both ends with the tone that should come out:\n\n");
    for (const rate_pair& rates : {rate_pair{44100, 48000}, rate_pair{48000, 44100}}) {
        std::printf("- ");
        print_long_stream(rates);
    }
    return 0;
}
