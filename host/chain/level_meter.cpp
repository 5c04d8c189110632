#include "host/chain/level_meter.h"

#include <cmath>

namespace host {

void level_meter::measure(std::span<const double> samples) {
    for (const double sample : samples) {
        const double magnitude = std::fabs(sample);
        if (!(magnitude <= 1.0)) {
            ++over_full_scale_;
        }
        if (magnitude > peak_) {
            peak_ = magnitude;
        }
    }
}

double level_meter::peak_dbfs() const {
    return 20.0 * std::log10(peak_);
}

} // namespace host
