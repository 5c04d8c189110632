// kelvane-sinc-sweep [QUALITY...]: the length of the resampler's output for every length of a short stream and for some
// long ones, at each target rate that the dialog offers, as a table. Without arguments all qualities. Exit code 1 when
// a length is wrong. Run from the folder where the module lies.
#include "tests/module/run_effect.h"
#include "tests/module/sinc_preset.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

constexpr std::uint32_t input_hz = 44100;
constexpr std::size_t longest_short_frames = 5000;
constexpr std::array<std::size_t, 4> long_frames{1'000'000, 1'234'567, 2'097'152, 3'000'001};
constexpr std::array<std::uint32_t, 11> targets_hz{8000,  11025, 16000, 22050, 24000, 32000,
                                                   44100, 48000, 64000, 88200, 96000};
constexpr std::array<const char*, 5> names{"Lowest", "Lower", "Normal", "Higher", "Highest"};

/// Exact halves fall as these doubles fall.
std::size_t expected_frames(std::size_t frames, std::uint32_t target_hz) {
    return static_cast<std::size_t>(static_cast<double>(frames) / input_hz * target_hz + 0.5);
}

bool is_length_right(velmora::effect_instance& effect, std::uint32_t target_hz, const std::vector<double>& audio) {
    random_source random(1);
    const programme out =
        play(effect, {{{input_hz, 1, 0x4}, audio}}, {4096, 1}, velmora::run_flag::end_of_playback, random);
    return frames_of(out) == expected_frames(audio.size(), target_hz);
}

/// The number of wrong lengths.
std::size_t sweep(std::uint32_t quality, std::uint32_t target_hz) {
    random_source random(1);
    const std::vector<double> longest = noise(random, long_frames.back(), 0.9);
    const auto effect = make_sinc(target_hz, quality);
    std::size_t wrong = 0;
    const auto try_length = [&](std::size_t frames) {
        const auto end = longest.begin() + static_cast<std::ptrdiff_t>(frames);
        wrong += is_length_right(*effect, target_hz, {longest.begin(), end}) ? 0U : 1U;
    };
    for (std::size_t frames = 0; frames <= longest_short_frames; ++frames) {
        try_length(frames);
    }
    for (const std::size_t frames : long_frames) {
        try_length(frames);
    }
    return wrong;
}

void print_head() {
    std::printf("| quality |");
    for (const std::uint32_t target_hz : targets_hz) {
        std::printf(" %u |", target_hz);
    }
    std::printf("\n|---|");
    for (std::size_t i = 0; i < targets_hz.size(); ++i) {
        std::printf("---|");
    }
    std::printf("\n");
}

std::size_t print_row(std::uint32_t quality) {
    std::size_t all_wrong = 0;
    std::printf("| %s |", names.at(quality));
    for (const std::uint32_t target_hz : targets_hz) {
        const std::size_t wrong = sweep(quality, target_hz);
        all_wrong += wrong;
        std::printf(" %zu |", wrong);
        std::fflush(stdout);
    }
    std::printf("\n");
    return all_wrong;
}

} // namespace

int main(int count, char** arguments) {
    std::vector<std::uint32_t> qualities;
    for (int i = 1; i < count; ++i) {
        qualities.push_back(static_cast<std::uint32_t>(std::stoul(arguments[i])));
    }
    if (qualities.empty()) {
        qualities = {0, 1, 2, 3, 4};
    }
    print_head();
    std::size_t wrong = 0;
    for (const std::uint32_t quality : qualities) {
        wrong += print_row(quality);
    }
    return wrong == 0 ? 0 : 1;
}
