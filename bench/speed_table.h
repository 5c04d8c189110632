// The results as tables for people.
#pragma once

#include "bench/peers_bench.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints two Markdown tables of medians of the run's repetitions: the speed of each effect and peer, its time as a
/// multiple of a copy's of the same input, and the spread (standard deviation over mean); and the speed of each effect
/// as a multiple of its peer's. Names are "subject/input"; the subject "copy" is the copy.
class speed_table final : public benchmark::BenchmarkReporter {
public:
    explicit speed_table(std::vector<comparison> comparisons) : comparisons_(std::move(comparisons)) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct result {
        std::string name;
        double median_ns = 0.0;
        double spread = 0.0;
        double x_real_time = 0.0;
    };

    double median_ns(const std::string& subject, const std::string& input) const;
    void print_speeds() const;
    void print_comparisons() const;

    std::vector<comparison> comparisons_;
    std::map<std::int64_t, result> results_; ///< by the order of registration
};

} // namespace bench
