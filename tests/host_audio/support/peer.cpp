#include "tests/host_audio/support/peer.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace testing_support {

namespace {

constexpr double amplitude = 0.25;

/// Whole numbers of periods in the second, low enough for every codec's low-frequency channel.
std::size_t tone_hz(std::size_t channel) {
    return 20 + 10 * channel;
}

/// How much of the tone is in one channel of the second, by correlation.
double loudness(const std::vector<double>& samples, std::size_t channel, std::size_t channels, std::size_t hz) {
    std::complex<double> sum;
    const std::complex<double> step = std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>(hz) / tone_rate_hz);
    std::complex<double> turn = 1.0;
    for (std::size_t i = channel; i < samples.size(); i += channels) {
        sum += samples[i] * turn;
        turn *= step;
    }
    return std::abs(sum);
}

std::size_t loudest_tone(const std::vector<double>& samples, std::size_t channel, std::size_t channels) {
    std::vector<double> loud(channels);
    for (std::size_t tone = 0; tone < channels; ++tone) {
        loud[tone] = loudness(samples, channel, channels, tone_hz(tone));
    }
    return static_cast<std::size_t>(std::max_element(loud.begin(), loud.end()) - loud.begin());
}

} // namespace

std::string quoted(const std::filesystem::path& file) {
    return std::string("'").append(file.string()).append("'");
}

std::string output_of(const std::string& command) {
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string output;
    std::vector<char> block(65536);
    while (const std::size_t bytes = std::fread(block.data(), 1, block.size(), pipe)) {
        output.append(block.data(), bytes);
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error("failed: " + command);
    }
    return output;
}

std::vector<double> make_tones(std::size_t channels) {
    std::vector<double> samples(tone_rate_hz * channels);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t period = i / channels * tone_hz(i % channels) % tone_rate_hz;
        samples[i] = amplitude * std::sin(2.0 * std::numbers::pi * static_cast<double>(period) / tone_rate_hz);
    }
    return samples;
}

std::vector<std::size_t> heard_tones(const std::vector<double>& samples, std::size_t channels) {
    std::vector<std::size_t> heard;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        heard.push_back(loudest_tone(samples, channel, channels));
    }
    return heard;
}

std::vector<std::size_t> in_order(std::size_t channels) {
    std::vector<std::size_t> order(channels);
    std::iota(order.begin(), order.end(), std::size_t{0});
    return order;
}

void ffmpeg_write_tones(const std::filesystem::path& file, const std::string& layout, std::size_t channels,
                        const std::string& codec) {
    std::ostringstream command;
    command << "ffmpeg -v error -nostdin -y -f lavfi -i 'aevalsrc=";
    for (std::size_t channel = 0; channel < channels; ++channel) {
        command << (channel == 0 ? "" : "|") << amplitude << "*sin(2*PI*" << tone_hz(channel) << "*t)";
    }
    command << ":c=" << layout << ":s=48000:d=1' -c:a " << codec << ' ' << quoted(file) << " 2>&1";
    output_of(command.str());
}

std::vector<double> ffmpeg_read(const std::filesystem::path& file) {
    const std::string bytes = output_of("ffmpeg -v error -nostdin -i " + quoted(file) + " -f f64le -");
    std::vector<double> samples(bytes.size() / sizeof(double));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(double));
    return samples;
}

std::string ffmpeg_layout(const std::filesystem::path& file) {
    std::string layout = output_of("ffprobe -v error -show_entries stream=channel_layout -of csv=p=0 " + quoted(file));
    while (!layout.empty() && (layout.back() == '\n' || layout.back() == ',')) {
        layout.pop_back();
    }
    return layout;
}

} // namespace testing_support
