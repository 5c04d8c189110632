// The results of the converters as tables for people.
#pragma once

#include "bench/measure/converters.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints for each conversion two Markdown tables of medians of the run's repetitions: the speed of every converter
/// with its signal-to-noise ratios, and the speed of each of our levels as a multiple of a peer's. The peer is
/// libswresample with as many taps, and of each other family the fastest setting whose lower ratio is not worse by more
/// than 2 dB, or, where there is none, its cleanest.
class converter_table final : public benchmark::BenchmarkReporter {
public:
    static std::string benchmark_name(const converter_kind& kind, const conversion& rates, const std::string& material);

    void add_row(const converter_kind& kind, const conversion& rates, double low_tone_db, double high_tone_db);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct row {
        converter_kind kind;
        conversion rates;
        double low_tone_db;
        double high_tone_db;

        double lower_db() const { return std::min(low_tone_db, high_tone_db); }
    };
    struct speed {
        double x_real_time = 0.0;
        double spread = 0.0; ///< standard deviation over mean
    };

    std::vector<row> rows_of(const conversion& rates, const std::string& family) const;
    speed speed_of(const row& measured, const std::string& material) const;
    row like(const row& own, std::size_t level, const std::string& family) const;
    void print_speeds(const conversion& rates) const;
    void print_comparisons(const conversion& rates) const;

    std::vector<row> rows_;
    std::map<std::string, speed> speeds_; ///< by the benchmark's name
};

} // namespace bench
