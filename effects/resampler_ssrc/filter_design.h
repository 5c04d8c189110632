// The converter's two filters.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/rate_plan.h"

#include <cstddef>
#include <cstdint>

namespace kelvane::ssrc {

/// How good a conversion is.
struct converter_quality {
    std::uint32_t down_filter_taps;   ///< least length of the long filter going down
    std::uint32_t up_filter_taps;     ///< the same going up
    std::uint32_t attenuation_db;     ///< of the stop band
    std::uint32_t transition_band_hz; ///< of the long filter, at most
};

/// The one that the effect uses.
inline constexpr converter_quality effect_quality{
    .down_filter_taps = 16384, .up_filter_taps = 16384, .attenuation_db = 170, .transition_band_hz = 100};

/// A symmetric low-pass filter: a Kaiser-windowed sinc.
struct low_pass {
    std::int64_t length; ///< odd
    double cutoff_hz;    ///< the middle of the transition band
    double rate_hz;
    double attenuation_db;

    /// Half the length, less the middle tap.
    std::int64_t reach() const noexcept { return (length - 1) / 2; }
    /// All taps, times `gain`; their sum is the gain. Throws `bad_allocation`.
    aligned_array<double> taps(double gain) const;
};

/// The sharp filter, which runs at `plan.filter_hz()`. Going up it keeps the band of the source whole (the transition
/// band lies about its edge); going down nothing folds back beyond it (the transition band ends at the edge).
low_pass design_long_filter(const rate_plan& plan, const converter_quality& quality) noexcept;

/// The prototype of the polyphase stage, at the common rate. Its wide transition band lies between the edge of the band
/// and the long filter's images. A single tap where the long filter runs at the common rate already, going down.
low_pass design_polyphase_filter(const rate_plan& plan, const converter_quality& quality) noexcept;

/// Both filters of a conversion.
struct filter_designs {
    low_pass long_filter;
    low_pass prototype;
};

filter_designs design_filters(const rate_plan& plan, const converter_quality& quality) noexcept;

} // namespace kelvane::ssrc
