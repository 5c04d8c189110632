// kelvane-quality FOLDER: on standard output a table of what the module's converters and their peers do to audio, and
// in the folder the sweeps that the pictures show, converted: NAME_up.f64 and NAME_down.f64, raw doubles at 96000 and
// 44100 Hz.
#include "bench/measure/latency.h"
#include "bench/measure/quality.h"
#include "bench/own_converters.h"
#include "bench/peer_converters.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr bench::conversion up{44100, 48000, 1};
constexpr bench::conversion down{48000, 44100, 1};
constexpr double sweep_s = 8.0;
constexpr std::string_view pictured_peer = "libsoxr VHQ steep";

void print_head() {
    fmt::print("| converter | 997 Hz (dB) | 15 kHz (dB) | -0.1 dB (Hz) | -3 dB (Hz) | image of 20.5 kHz (dB) | "
               "of 21.5 kHz (dB) | alias at 20.5 kHz (dB) | at 21.5 kHz (dB) | latency up (ms) | down (ms) |\n"
               "|---|---|---|---|---|---|---|---|---|---|---|\n");
}

/// A dash for what does not exist.
std::string figure(double value, int decimals) {
    return std::isfinite(value) ? fmt::format("{:.{}f}", value, decimals) : "-";
}

/// Without the sign of a zero.
std::string milliseconds(double time_s) {
    return figure(std::round(1e4 * time_s) / 10.0 + 0.0, 1);
}

/// Least and most, or one figure where they are the same to a tenth.
std::string latency_ms(const bench::converter_kind& kind, const bench::conversion& rates) {
    const bench::latency measured = bench::measure_latency(kind, rates);
    const std::string least = milliseconds(measured.least_s);
    const std::string most = milliseconds(measured.most_s);
    return least == most ? most : least + " to " + most;
}

void print_row(const std::string& name, const bench::tone_path& path, const std::string& latency_up,
               const std::string& latency_down) {
    fmt::print("| {} | {} | {} | {} | {} | {} | {} | {} | {} | {} | {} |\n", name,
               figure(bench::signal_to_noise_db(path, up, 997.0), 1),
               figure(bench::signal_to_noise_db(path, up, 15000.0), 1), figure(bench::edge_hz(path, up, 0.1), 0),
               figure(bench::edge_hz(path, up, 3.0), 0), figure(bench::image_attenuation_db(path, up, 20500.0), 1),
               figure(bench::image_attenuation_db(path, up, 21500.0), 1),
               figure(bench::alias_attenuation_db(path, down, 20500.0), 1),
               figure(bench::alias_attenuation_db(path, down, 21500.0), 1), latency_up, latency_down);
    std::fflush(stdout);
}

void print_row(const bench::converter_kind& kind) {
    print_row(kind.name(), bench::path_through(kind), latency_ms(kind, up), latency_ms(kind, down));
}

void write_samples(const std::filesystem::path& file, const std::vector<double>& samples) {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(samples.data()),
              static_cast<std::streamsize>(samples.size() * sizeof(double)));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void write_sweeps(const bench::converter_kind& kind, const std::filesystem::path& folder) {
    write_samples(folder / (kind.name() + "_up.f64"), bench::convert_sweep(kind, {44100, 96000, 1}, sweep_s));
    write_samples(folder / (kind.name() + "_down.f64"), bench::convert_sweep(kind, {96000, 44100, 1}, sweep_s));
}

void measure_all(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    print_head();
    for (const bench::converter_kind& kind : bench::module_converters()) {
        print_row(kind);
        write_sweeps(kind, folder);
    }
    for (const bench::converter_kind& kind : bench::quality_peers()) {
        print_row(kind);
        if (kind.name() == pictured_peer) {
            write_sweeps(kind, folder);
        }
    }
    print_row("no converter: what the measurement sees", bench::ideal_path(), "-", "-");
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: kelvane-quality FOLDER\n", stderr);
        return 2;
    }
    try {
        measure_all(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kelvane-quality: %s\n", error.what());
        return 1;
    }
    return 0;
}
