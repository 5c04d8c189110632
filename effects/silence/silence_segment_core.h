// What the silence skipper measures of a tenth of a second.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvane {

/// Length and peak of one segment, gathered piece by piece. The pieces may have different rates, so the length is kept
/// in seconds. A segment is loud or silent as a whole: it is loud when its peak reaches the threshold.
class silence_segment_measure {
public:
    /// Frames of this rate that the segment still takes; 0 when it is full.
    std::size_t room_frames(std::uint32_t rate_hz) const noexcept;

    /// Counts a piece in. `peak` is its largest magnitude; one that is not a number does not count.
    void add(std::size_t frames, std::uint32_t rate_hz, double peak) noexcept;

    double duration_s() const noexcept { return duration_s_; }

    /// Whether the peak stays below the threshold, in dB of full scale. Peaks below 2^-24 (-144.5 dB) count as that.
    bool is_silent(double threshold_db) const noexcept;

private:
    double duration_s_ = 0.0;
    double peak_ = 0.0;
};

} // namespace kelvane
