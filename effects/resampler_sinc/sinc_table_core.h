// The windowed sinc of the converter, and its table.
#pragma once

#include "effects/resampler_sinc/sinc_quality_core.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

/// The low-pass filter of one pair of rates: a sinc of `taps` input frames under a window.
struct sinc_design {
    double cutoff;      ///< fraction of half the input rate
    std::uint32_t taps; ///< a multiple of 4
    std::uint32_t phases;
    sinc_window window;
    float kaiser_beta;

    bool is_interpolated() const noexcept { return window == sinc_window::kaiser; }

    /// A row of the table: the coefficients of one phase, and with a Kaiser window what each of them has to grow by to
    /// become that of the next phase.
    std::size_t row_floats() const noexcept { return std::size_t{taps} * (is_interpolated() ? 2 : 1); }
    std::size_t table_floats() const noexcept { return row_floats() * phases; }
};

/// How many taps the level's filter needs before they are made a multiple of 4, as a whole number. Going down (`ratio`,
/// output rate ÷ input rate, below 1) the filter is as much longer as its cutoff is lower.
double needed_sinc_taps(const sinc_quality& quality, double ratio) noexcept;

/// `needed_sinc_taps` is below 2^32 - 4.
sinc_design design_sinc(const sinc_quality& quality, double ratio) noexcept;

/// Fills `table`, which holds `table_floats()`.
///
/// Tap j of phase i stands at the place x = 2 × (j × phases + i) ÷ (taps × phases) - 1 of the window, which reaches
/// from -1 to 1. Its value is cutoff × sinc(π × taps ÷ 2 × x × cutoff) × window(x), with sinc(x) = sin(x) ÷ x and
///
///     Kaiser:  I0(beta × √(1 - x²)) ÷ I0(beta)    J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh
///                                                 window function", IEEE Symposium on Circuits and Systems, 1974
///     Lanczos: sinc(π × x)                        C. E. Duchon, "Lanczos Filtering in One and Two Dimensions",
///                                                 Journal of Applied Meteorology, 1979
///
/// All in double, save for the root, which is one of single precision and so is its product with beta: these last bits
/// are part of the sound.
void fill_sinc_table(const sinc_design& design, std::span<float> table) noexcept;

} // namespace kelvane
