// The discrete Fourier transform of real sequences.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/right_angle_fft.h"
#include "effects/resampler_ssrc/small_right_angle_fft.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane::ssrc {

/// A plan for one size n, a power of two from 4 on.
///
/// A spectrum has n numbers: [0] is the sum of the samples, [1] the term at half the rate (their alternating sum), then
/// for k = 1 ... n/2 - 1 [2k] is the sum of x[j] cos(2 pi j k / n) and [2k + 1] that of x[j] sin(2 pi j k / n).
/// A transform neither allocates nor locks. One plan serves one thread at a time.
///
/// z^n - 1 = (z^(n/2) - 1)(z^(n/2) + 1): the odd bins are a right-angle transform of a quarter of the points, the even
/// ones the same problem at half the size. Source of the split: G. Bruun, "z-Transform DFT Filters and FFTs", IEEE
/// Transactions on Acoustics, Speech and Signal Processing, 1978.
///
/// The converter does not call it, and the module holds nothing of it: a convolution asks for no order of the bins and
/// works on the right-angle transforms that this one is made of. This is the plain transform over them, for the tests,
/// which hold it against a peer and convert the plain way with it, and for the benchmark.
class real_fft {
public:
    /// Throws `std::bad_alloc` when memory is short.
    explicit real_fft(std::size_t size, const vector_kernels& kernels = best_kernels());

    std::size_t size() const noexcept { return size_; }

    /// In place, of `size()` samples.
    void forward(std::span<double> samples) noexcept;
    /// In place; n/2 times the samples.
    void backward(std::span<double> spectrum) noexcept;

private:
    /// The odd bins of the transform of `samples` values, at every `size_` ÷ `samples`th bin of the whole.
    struct octave {
        octave(std::size_t whole_size, std::size_t samples, const vector_kernels& kernels);

        std::size_t samples;
        right_angle_fft transform;
        aligned_array<std::int32_t> targets; ///< by place: where the value goes, mirrored ones as ~target
    };

    void scatter(const octave& part, std::span<double> spectrum) const noexcept;
    void gather(const octave& part, std::span<const double> spectrum) noexcept;
    void forward_small(std::span<double> spectrum) noexcept;
    void backward_small(std::span<const double> spectrum) noexcept;

    std::size_t size_;
    std::size_t small_size_; ///< what is left to the small transforms
    std::vector<octave> octaves_;
    small_right_angle_fft small_;
    aligned_array<double> folded_;   ///< sums first, differences behind them
    aligned_array<double> spectrum_; ///< of the odd bins of one octave
};

/// The transform by direction: at least 0 forward, below 0 backward.
inline void rdft(real_fft& plan, int direction, std::span<double> values) noexcept {
    direction >= 0 ? plan.forward(values) : plan.backward(values);
}

} // namespace kelvane::ssrc
