#include "bench/converter_table.h"

#include "bench/own_converters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace bench {

namespace {

const std::string own_family = sinc_cores().front().family;
const std::string family_of_like_taps = "libswresample";
const std::array<std::string, 5> peer_families{family_of_like_taps, "zita-resampler", "speexdsp", "libsamplerate",
                                               "libsoxr"};
const std::array<std::string, 3> material_names{"mono", "stereo", "5.1"};
constexpr double like_within_db = 2.0;

bool is_same(const conversion& a, const conversion& b) {
    return a.input_hz == b.input_hz && a.output_hz == b.output_hz;
}

} // namespace

std::string converter_table::benchmark_name(const converter_kind& kind, const conversion& rates,
                                            const std::string& material) {
    return fmt::format("{}/{} to {}/{}", kind.name(), rates.input_hz, rates.output_hz, material);
}

void converter_table::add_row(const converter_kind& kind, const conversion& rates, double low_tone_db,
                              double high_tone_db) {
    rows_.push_back({kind, rates, low_tone_db, high_tone_db});
}

bool converter_table::ReportContext(const Context&) {
    return true;
}

void converter_table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        speed& measured = speeds_[run.run_name.function_name];
        if (run.aggregate_name == "median") {
            measured.x_real_time = run.counters.at("x_real_time");
        } else if (run.aggregate_name == "cv") {
            measured.spread = run.real_accumulated_time; // a share of the mean, not a time
        }
    }
}

/// All families when none is named.
std::vector<converter_table::row> converter_table::rows_of(const conversion& rates, const std::string& family) const {
    std::vector<row> found;
    std::copy_if(rows_.begin(), rows_.end(), std::back_inserter(found), [&](const row& candidate) {
        return is_same(candidate.rates, rates) && (family.empty() || candidate.kind.family == family);
    });
    return found;
}

/// Zeros for what was not measured.
converter_table::speed converter_table::speed_of(const row& measured, const std::string& material) const {
    const auto found = speeds_.find(benchmark_name(measured.kind, measured.rates, material));
    return found == speeds_.end() ? speed() : found->second;
}

converter_table::row converter_table::like(const row& own, std::size_t level, const std::string& family) const {
    const std::vector<row> candidates = rows_of(own.rates, family);
    if (family == family_of_like_taps) {
        return candidates[level];
    }
    const auto is_worse = [&](const row& a, const row& b) {
        const bool is_a_clean = a.lower_db() + like_within_db >= own.lower_db();
        const bool is_b_clean = b.lower_db() + like_within_db >= own.lower_db();
        if (is_a_clean != is_b_clean) {
            return is_b_clean;
        }
        return is_a_clean ? speed_of(a, "stereo").x_real_time < speed_of(b, "stereo").x_real_time
                          : a.lower_db() < b.lower_db();
    };
    return *std::max_element(candidates.begin(), candidates.end(), is_worse);
}

void converter_table::print_speeds(const conversion& rates) const {
    fmt::print("\n{} to {} Hz, times real time (spread)\n\n"
               "| converter | 997 Hz (dB) | 15 kHz (dB) | mono | stereo | 5.1 |\n|---|---|---|---|---|---|\n",
               rates.input_hz, rates.output_hz);
    for (const row& printed : rows_of(rates, "")) {
        fmt::print("| {} | {:.1f} | {:.1f} |", printed.kind.name(), printed.low_tone_db, printed.high_tone_db);
        for (const std::string& material : material_names) {
            const speed measured = speed_of(printed, material);
            fmt::print(" {:.0f} ({:.0f} %) |", measured.x_real_time, 100.0 * measured.spread);
        }
        fmt::print("\n");
    }
}

void converter_table::print_comparisons(const conversion& rates) const {
    fmt::print("\n{} to {} Hz, speed as a multiple of the peer's\n\n"
               "| level | dB | peer | its dB | mono | stereo | 5.1 |\n|---|---|---|---|---|---|---|\n",
               rates.input_hz, rates.output_hz);
    const std::vector<row> levels = rows_of(rates, own_family);
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const row& own = levels[level];
        for (const std::string& family : peer_families) {
            const row peer = like(own, level, family);
            fmt::print("| {} | {:.1f} | {} | {:.1f} |", own.kind.setting, own.lower_db(), peer.kind.name(),
                       peer.lower_db());
            for (const std::string& material : material_names) {
                fmt::print(" {:.2f} |", speed_of(own, material).x_real_time / speed_of(peer, material).x_real_time);
            }
            fmt::print("\n");
        }
    }
}

void converter_table::Finalize() {
    for (const conversion& rates : {conversion{44100, 48000, 1}, {48000, 44100, 1}}) {
        print_speeds(rates);
        print_comparisons(rates);
    }
}

} // namespace bench
