// How loud the output became.
#pragma once

#include <cstdint>
#include <span>

namespace host {

/// Samples that are not numbers count as over full scale and leave the peak alone.
class level_meter {
public:
    void measure(std::span<const double> samples);

    /// The largest magnitude, 1.0 for full scale.
    double peak() const noexcept { return peak_; }

    /// The same in decibels relative to full scale; minus infinity for silence.
    double peak_dbfs() const;

    /// Samples whose magnitude is above full scale.
    std::uint64_t over_full_scale() const noexcept { return over_full_scale_; }

private:
    double peak_ = 0.0;
    std::uint64_t over_full_scale_ = 0;
};

} // namespace host
