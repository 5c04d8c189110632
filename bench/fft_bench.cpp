// kelvane-fft-bench: speed of the FFT converter and of its transforms beside peers, as ratios within one run.
//
// All subjects of a table take turns, and each is given its best time of the processor (not of the clock on the wall):
// others on the machine then cost both sides alike. What would still make the numbers lie: another process on the same
// core's other thread for a whole table (run it twice), a source that leaves the cache (it does not: 4096 frames), a
// peer with another band (libsoxr's VHQ lets its transition band begin at 0.913 of the band; its steep variant is the
// like one).
#include "effects/resampler_ssrc/real_fft.h"
#include "effects/resampler_ssrc/right_angle_fft.h"
#include "effects/resampler_ssrc/ssrc_converter.h"

#include <fmt/format.h>

#include <fftw3.h>
#include <soxr.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace kelvane::ssrc;

constexpr std::size_t block_frames = 4096;
constexpr int repetitions = 25;
constexpr double repetition_s = 0.02;

struct subject {
    std::string name;
    std::function<void()> run;
    double best_s = std::numeric_limits<double>::infinity();
};

double processor_s() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double time_of_one(const subject& measured) {
    const double start = processor_s();
    double end = start;
    int runs = 0;
    for (; end - start < repetition_s; ++runs) {
        measured.run();
        end = processor_s();
    }
    return (end - start) / runs;
}

void measure(std::vector<subject>& subjects) {
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (subject& measured : subjects) {
            measured.best_s = std::min(measured.best_s, time_of_one(measured));
        }
    }
}

std::vector<double> noise(std::size_t samples) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> made(samples);
    std::generate(made.begin(), made.end(), [&] { return uniform(random); });
    return made;
}

struct conversion {
    std::uint32_t input_hz;
    std::uint32_t output_hz;
    std::uint16_t channels;
};

subject converter_subject(const conversion& job, const std::vector<double>& source, const vector_kernels& kernels) {
    auto converter = std::make_shared<ssrc_converter>();
    converter->set_up(float64_format(job.input_hz, job.channels), job.output_hz, effect_quality, kernels);
    return {kernels.name, [converter, &source] {
                if (!converter->process(std::as_bytes(std::span(source)), false)) {
                    throw std::runtime_error("the converter failed");
                }
            }};
}

subject soxr_subject(const conversion& job, const std::vector<double>& source, const std::string& name,
                     unsigned long recipe) {
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(recipe, 0);
    const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
    const std::shared_ptr<struct soxr> peer(
        soxr_create(job.input_hz, job.output_hz, job.channels, nullptr, &io, &quality, &runtime), soxr_delete);
    const std::size_t room_frames = block_frames * job.output_hz / job.input_hz * 4 + block_frames;
    auto output = std::make_shared<std::vector<double>>(room_frames * job.channels);
    return {name, [=, &source] {
                std::size_t taken = 0;
                std::size_t made = 0;
                soxr_process(peer.get(), source.data(), block_frames, &taken, output->data(), room_frames, &made);
                if (taken != block_frames) {
                    throw std::runtime_error("the peer left some");
                }
            }};
}

void print_conversion(const conversion& job) {
    const std::vector<double> source = noise(block_frames * job.channels);
    std::vector<subject> subjects{converter_subject(job, source, best_kernels()),
                                  converter_subject(job, source, sse2_kernels()),
                                  soxr_subject(job, source, "VHQ", SOXR_VHQ),
                                  soxr_subject(job, source, "VHQ steep", SOXR_VHQ | SOXR_STEEP_FILTER)};
    measure(subjects);
    const double block_s = static_cast<double>(block_frames) / job.input_hz;
    fmt::print("| {} | {} | {} | {:.0f} | {:.0f} | {:.0f} | {:.0f} | {:.2f} | {:.2f} | {:.2f} |\n", job.input_hz,
               job.output_hz, job.channels, block_s / subjects[0].best_s, block_s / subjects[1].best_s,
               block_s / subjects[2].best_s, block_s / subjects[3].best_s, subjects[2].best_s / subjects[0].best_s,
               subjects[2].best_s / subjects[1].best_s, subjects[3].best_s / subjects[0].best_s);
}

void print_conversions() {
    fmt::print(
        "| from Hz | to Hz | channels | {0} (x real time) | SSE2 | libsoxr VHQ | VHQ steep | {0} ÷ VHQ | SSE2 ÷ VHQ "
        "| {0} ÷ steep |\n|---|---|---|---|---|---|---|---|---|---|\n",
        best_kernels().name);
    for (const auto& [input_hz, output_hz] : {std::pair{44100U, 48000U},
                                              {48000U, 44100U},
                                              {44100U, 96000U},
                                              {96000U, 44100U},
                                              {44100U, 88200U},
                                              {96000U, 48000U}}) {
        for (const int channels : {1, 2, 6}) {
            print_conversion({input_hz, output_hz, static_cast<std::uint16_t>(channels)});
        }
    }
}

/// A transform there and back, with the scaling that keeps the numbers where they are.
subject real_pair(std::size_t size) {
    auto plan = std::make_shared<real_fft>(size);
    auto values = std::make_shared<std::vector<double>>(noise(size));
    return {"in order", [=] {
                plan->forward(*values);
                plan->backward(*values);
                for (double& value : *values) {
                    value *= 2.0 / static_cast<double>(size);
                }
            }};
}

/// The converter's own transform of as many real samples.
subject right_angle_pair(std::size_t size, const vector_kernels& kernels) {
    auto plan = std::make_shared<right_angle_fft>(size / 2, kernels);
    auto values = std::make_shared<std::vector<double>>(noise(size));
    auto spectrum = std::make_shared<std::vector<double>>(size);
    return {kernels.name, [=] {
                double* re = values->data();
                double* im = values->data() + size / 2;
                plan->forward(re, im, spectrum->data());
                plan->backward(spectrum->data(), re, im);
                for (double& value : *values) {
                    value *= 2.0 / static_cast<double>(size);
                }
            }};
}

subject fftw_pair(std::size_t size, const std::string& name, unsigned flags) {
    const std::shared_ptr<double> samples(fftw_alloc_real(size), fftw_free);
    const std::shared_ptr<double> spectrum(fftw_alloc_real(size + 2), fftw_free);
    auto* bins = reinterpret_cast<fftw_complex*>(spectrum.get());
    const auto count = static_cast<int>(size);
    const std::shared_ptr<fftw_plan_s> forward(fftw_plan_dft_r2c_1d(count, samples.get(), bins, flags),
                                               fftw_destroy_plan);
    const std::shared_ptr<fftw_plan_s> backward(fftw_plan_dft_c2r_1d(count, bins, samples.get(), flags),
                                                fftw_destroy_plan);
    const std::vector<double> source = noise(size);
    std::copy(source.begin(), source.end(), samples.get());
    return {name, [samples, spectrum, forward, backward, size] {
                fftw_execute(forward.get());
                fftw_execute(backward.get());
                for (double& value : std::span(samples.get(), size)) {
                    value *= 1.0 / static_cast<double>(size);
                }
            }};
}

void print_transforms() {
    fmt::print("\n| real samples | converter's {0} (us a pair) | SSE2 | in order | FFTW estimate | FFTW measure "
               "| {0} ÷ measure | in order ÷ measure |\n|---|---|---|---|---|---|---|---|\n",
               best_kernels().name);
    for (const std::size_t size : {8192U, 32768U, 65536U, 131072U}) {
        std::vector<subject> subjects{right_angle_pair(size, best_kernels()), right_angle_pair(size, sse2_kernels()),
                                      real_pair(size), fftw_pair(size, "estimate", FFTW_ESTIMATE),
                                      fftw_pair(size, "measure", FFTW_MEASURE)};
        measure(subjects);
        fmt::print("| {} |", size);
        for (const subject& measured : subjects) {
            fmt::print(" {:.1f} |", 1e6 * measured.best_s);
        }
        fmt::print(" {:.2f} | {:.2f} |\n", subjects[4].best_s / subjects[0].best_s,
                   subjects[4].best_s / subjects[2].best_s);
    }
}

} // namespace

int main() {
    print_conversions();
    print_transforms();
    return 0;
}
