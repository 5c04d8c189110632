// The results as a table for people.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints a Markdown table: each effect's speed and its time as a multiple of the peer's for the same layout, both the
/// median of the run's repetitions, and the spread (standard deviation over mean). Names are "subject/layout"; the
/// subject "copy" is the peer.
class speed_table final : public benchmark::BenchmarkReporter {
public:
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

    double peer_ns(const std::string& layout) const;

    std::map<std::int64_t, result> results_; ///< by the order of registration
};

} // namespace bench
