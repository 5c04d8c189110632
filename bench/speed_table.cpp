#include "bench/speed_table.h"

#include <fmt/format.h>

#include <limits>

namespace bench {

namespace {

std::string subject_of(const std::string& name) {
    return name.substr(0, name.rfind('/'));
}

std::string layout_of(const std::string& name) {
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

double speed_table::peer_ns(const std::string& layout) const {
    for (const auto& [index, measured] : results_) {
        if (measured.name == "copy/" + layout) {
            return measured.median_ns;
        }
    }
    return std::numeric_limits<double>::quiet_NaN();
}

void speed_table::Finalize() {
    fmt::print("| effect | input | speed (x real time) | time (x a copy of the blocks) | spread |\n"
               "|---|---|---|---|---|\n");
    for (const auto& [index, measured] : results_) {
        const std::string layout = layout_of(measured.name);
        fmt::print("| {} | {} | {:.0f} | {:.1f} | {:.0f} % |\n", subject_of(measured.name), layout,
                   measured.x_real_time, measured.median_ns / peer_ns(layout), 100.0 * measured.spread);
    }
}

} // namespace bench
