// kelvane-sinc-quality FOLDER: a table of what our converter's levels and its peers do to audio on standard
// output, and in the folder our levels' converted sweeps, LEVEL_up.f64 and LEVEL_down.f64: raw doubles at 96000 and
// 44100 Hz.
#include "bench/quality_measure.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

constexpr double sweep_s = 8.0;

void print_head() {
    fmt::print("| converter | 997 Hz (dB) | 15 kHz (dB) | -0.1 dB (Hz) | -3 dB (Hz) | image of 20 kHz (dB) | "
               "of 15 kHz (dB) | alias at 20 kHz (dB) | at 15 kHz (dB) |\n|---|---|---|---|---|---|---|---|---|\n");
}

void print_row(const bench::converter_kind& kind) {
    const bench::converter_quality measured = bench::measure_quality(kind);
    fmt::print("| {} | {:.1f} | {:.1f} | {:.0f} | {:.0f} | {:.1f} | {:.1f} | {:.1f} | {:.1f} |\n", kind.name(),
               measured.low_tone_db, measured.high_tone_db, measured.edge_hz, measured.half_power_hz,
               measured.near_image_db, measured.far_image_db, measured.near_alias_db, measured.far_alias_db);
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
    write_samples(folder / (kind.setting + "_up.f64"), bench::convert_sweep(kind, {44100, 96000, 1}, sweep_s));
    write_samples(folder / (kind.setting + "_down.f64"), bench::convert_sweep(kind, {96000, 44100, 1}, sweep_s));
}

void measure_all(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    print_head();
    for (const bench::converter_kind& kind : bench::own_converters()) {
        print_row(kind);
        write_sweeps(kind, folder);
    }
    for (const bench::converter_kind& kind : bench::peer_converters()) {
        if (kind.family == "libsamplerate" || kind.family == "libsoxr") {
            print_row(kind);
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: kelvane-sinc-quality FOLDER\n", stderr);
        return 2;
    }
    try {
        measure_all(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kelvane-sinc-quality: %s\n", error.what());
        return 1;
    }
    return 0;
}
