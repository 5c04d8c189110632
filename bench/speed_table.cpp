#include "bench/speed_table.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace bench {

namespace {

std::string subject_of(const std::string& name) {
    return name.substr(0, name.rfind('/'));
}

std::string input_of(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

} // namespace

bool speed_table::ReportContext(const Context&) {
    return true;
}

void speed_table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        result& measured = results_[run.family_index];
        measured.name = run.run_name.function_name;
        if (run.aggregate_name == "median") {
            measured.median_ns = run.GetAdjustedRealTime();
            measured.x_real_time = run.counters.at("x_real_time");
        } else if (run.aggregate_name == "cv") {
            measured.spread = run.real_accumulated_time; // a share of the mean, not a time
        }
    }
}

/// Not a number for what was not measured.
double speed_table::median_ns(const std::string& subject, const std::string& input) const {
    for (const auto& [index, measured] : results_) {
        if (measured.name == subject + "/" + input) {
            return measured.median_ns;
        }
    }
    return std::numeric_limits<double>::quiet_NaN();
}

void speed_table::print_speeds() const {
    fmt::print("| effect or peer | input | speed (x real time) | time (x a copy of the blocks) | spread |\n"
               "|---|---|---|---|---|\n");
    for (const auto& [index, measured] : results_) {
        const std::string input = input_of(measured.name);
        fmt::print("| {} | {} | {:.0f} | {:.1f} | {:.0f} % |\n", subject_of(measured.name), input, measured.x_real_time,
                   measured.median_ns / median_ns("copy", input), 100.0 * measured.spread);
    }
}

void speed_table::print_comparisons() const {
    fmt::print("\n| effect | input | peer | speed (x the peer's) |\n|---|---|---|---|\n");
    for (const comparison& pair : comparisons_) {
        const double ratio = median_ns(pair.peer, pair.input) / median_ns(pair.effect, pair.input);
        if (!std::isnan(ratio)) {
            fmt::print("| {} | {} | {} | {:.2f} |\n", pair.effect, pair.input, pair.peer, ratio);
        }
    }
}

void speed_table::Finalize() {
    print_speeds();
    print_comparisons();
}

} // namespace bench
