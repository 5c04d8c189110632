#include "effects/silence/silence_segment_core.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr double segment_s = 0.1;
constexpr double lowest_peak = 5.960464477539063e-8; // 2^-24: digital silence has a level too

} // namespace

std::size_t silence_segment_measure::room_frames(std::uint32_t rate_hz) const noexcept {
    if (duration_s_ >= segment_s) {
        return 0;
    }
    return static_cast<std::size_t>(std::llround(rate_hz * (segment_s - duration_s_)));
}

void silence_segment_measure::add(std::size_t frames, std::uint32_t rate_hz, double peak) noexcept {
    duration_s_ += static_cast<double>(frames) / rate_hz;
    peak_ = std::max(peak_, peak); // in this order: of two values that cannot be compared it is the first
}

bool silence_segment_measure::is_silent(double threshold_db) const noexcept {
    return 20.0 * std::log10(std::max(peak_, lowest_peak)) < threshold_db;
}

} // namespace kelvane
