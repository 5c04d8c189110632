// The quality levels of the windowed-sinc converter.
#pragma once

#include <array>
#include <cstdint>

namespace kelvane {

enum class sinc_window : std::uint32_t { kaiser = 1, lanczos = 2 };

/// One level. The filter stands tabulated at 2^phase_bits positions between two input frames; the Kaiser levels go on
/// by linear interpolation from one position to the next, to 2^(phase_bits + subphase_bits) of them.
struct sinc_quality {
    const char* name;
    const char* description;
    double cutoff;           ///< fraction of half the lower of the two rates
    std::uint32_t sidelobes; ///< on either side, in input frames when converting upwards
    std::uint32_t phase_bits;
    std::uint32_t subphase_bits;
    sinc_window window;
    float kaiser_beta; ///< 0 where the window has none
};

inline constexpr std::array<sinc_quality, 5> sinc_qualities{{
    {"Lowest", "Fastest sinc interpolation, SNR about 40 dB", 0.98, 2, 12, 10, sinc_window::lanczos, 0.0F},
    {"Lower", "Faster sinc interpolation, SNR about 55 dB", 0.98, 4, 12, 10, sinc_window::lanczos, 0.0F},
    {"Normal", "Fast sinc interpolation, SNR about 70 dB", 0.825, 8, 8, 16, sinc_window::kaiser, 5.5F},
    {"Higher", "Higher quality sinc interpolation, SNR about 110 dB", 0.90, 32, 10, 14, sinc_window::kaiser, 10.5F},
    {"Highest", "Highest quality sinc interpolation, SNR about 140 dB", 0.962, 128, 10, 14, sinc_window::kaiser, 14.5F},
}};

/// "Normal": what is taken where nothing else is asked for.
inline constexpr std::uint32_t normal_sinc_quality = 2;

/// The level of that index; "Normal" for an index that has none.
constexpr const sinc_quality& sinc_quality_at(std::uint32_t index) noexcept {
    return sinc_qualities[index < sinc_qualities.size() ? index : normal_sinc_quality];
}

} // namespace kelvane
