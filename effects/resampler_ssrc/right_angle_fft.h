// The transform behind every convolution of the converter.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <array>
#include <cstddef>
#include <span>

namespace kelvane::ssrc {

/// Values of a polynomial of M complex coefficients at the M roots of z^M = i, and back.
///
/// A real signal x of 2M samples goes in as x[n] + i x[n + M]: modulo z^M - i that is the polynomial of x itself.
/// Products of spectra are then convolutions of real signals modulo z^2M + 1, by complex transforms of half the length,
/// with neither a pass that separates real spectra nor one that weights the samples.
///
/// z^m - r splits into the four factors z^(m/4) - w i^k, w = r^(1/4); so all the points of a node share one set of
/// roots. A spectrum stands in the order of the tree's leaves, which no product minds, and nothing is ever reordered.
///
/// Sources: H. J. Nussbaumer, "Fast Fourier Transform and Convolution Algorithms", 1981 (polynomial transforms and
/// their factors); R. Crandall, B. Fagin, "Discrete Weighted Transforms and Large-Integer Arithmetic", Mathematics of
/// Computation, 1994 (the right-angle convolution).
class right_angle_fft {
public:
    static constexpr std::size_t fewest_points = 32;

    /// `points` is a power of two from `fewest_points` on. Throws `bad_allocation`.
    explicit right_angle_fft(std::size_t points, const vector_kernels& kernels = best_kernels());

    std::size_t points() const noexcept { return points_; }

    /// The 2 x `points` numbers of the spectrum of re + i im.
    void forward(const double* re, const double* im, double* spectrum) const noexcept {
        kernels_->forward(tables(), re, im, spectrum);
    }
    /// `points` times the signal; the spectrum is used up.
    void backward(double* spectrum, double* re, double* im) const noexcept {
        kernels_->backward(tables(), spectrum, re, im);
    }
    /// For each number pair of a spectrum, by its place, its root's number k: the root is e^(2 pi i (1/4 + k) / M).
    /// A pair's place counts blocks of four: real part at 8 (place / 4) + place % 4, imaginary part four behind it.
    std::size_t root_number(std::size_t place) const noexcept;

    /// For the inner loops.
    transform_tables tables() const noexcept;

private:
    static constexpr std::size_t most_levels = 16;

    bool opens_with_two() const noexcept;
    void make_inner_level(std::size_t level, std::size_t nodes);
    void make_leaves();

    std::size_t points_;
    const vector_kernels* kernels_;
    aligned_array<double> opening_;
    std::array<aligned_array<double>, most_levels> inner_;
    aligned_array<double> leaves_;
    std::array<const double*, most_levels> inner_numbers_{};
};

} // namespace kelvane::ssrc
