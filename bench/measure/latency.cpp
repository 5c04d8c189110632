#include "bench/measure/latency.h"

#include <algorithm>
#include <limits>

namespace bench {

namespace {

constexpr std::size_t block_frames = 1024;
constexpr double settling_s = 2.0;
constexpr double end_s = 6.0;

} // namespace

latency measure_latency(const converter_kind& kind, const conversion& rates) {
    const auto used = kind.make(rates);
    const std::vector<double> silence(block_frames * rates.channels);
    latency found{std::numeric_limits<double>::infinity(), 0.0};
    double in_s = 0.0;
    double out_s = 0.0;
    while (in_s < end_s) {
        used->load(silence);
        out_s += static_cast<double>(used->run()) / rates.output_hz;
        in_s += static_cast<double>(block_frames) / rates.input_hz;
        if (in_s >= settling_s) {
            found = {std::min(found.least_s, in_s - out_s), std::max(found.most_s, in_s - out_s)};
        }
    }
    return found;
}

} // namespace bench
