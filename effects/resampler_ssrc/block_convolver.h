// Convolution with long filters, block by block.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/right_angle_fft.h"

#include <cstddef>
#include <span>

namespace kelvane::ssrc {

/// A matrix of filters of one length between some inputs and some outputs, for each of a number of channels: every
/// output is the sum of all inputs through their filters.
///
/// A filter is cut into parts of one block's length; the transform spans two blocks, of which the newer one is new
/// output (overlap-save), and the spectra of the outputs to come gather what each block's parts contribute. In a
/// right-angle transform the older block is the real part and the newer one the imaginary part: nothing is copied
/// together, and nothing is added up afterwards.
///
/// Sources: T. G. Stockham, "High-Speed Convolution and Correlation", AFIPS Spring Joint Computer Conference, 1966;
/// A. Torger, A. Farina, "Real-Time Partitioned Convolution for Ambiophonics Surround Sound", IEEE Workshop on
/// Applications of Signal Processing to Audio and Acoustics, 2001.
class block_convolver {
public:
    struct shape {
        std::size_t inputs;  ///< at most 3
        std::size_t outputs; ///< at most 3
        std::size_t taps;    ///< of the longest filter
        std::size_t channels;
    };

    /// All filters are zero at first. Throws `bad_allocation`.
    block_convolver(const shape& of, const vector_kernels& kernels);

    /// The number of taps is at most that of the shape.
    void set_filter(std::size_t input, std::size_t output, std::span<const double> taps) noexcept;

    /// Of all inputs and outputs.
    std::size_t block_frames() const noexcept { return transform_.points(); }

    /// Where the next block of the input belongs.
    std::span<double> input(std::size_t channel, std::size_t input) noexcept;
    /// As many neighbouring channels go together.
    static constexpr std::size_t channels_together = 2;
    /// Convolves the block that all inputs of 1 or 2 channels hold; the first channel's number is even.
    void run(std::size_t first_channel, std::size_t count) noexcept;
    /// What the last run made of one of its channels. Valid until the next.
    std::span<const double> output(std::size_t channel, std::size_t output) const noexcept;
    /// To be called when all channels have run.
    void next_block() noexcept { ++blocks_; }

    /// Forgets the signal.
    void reset() noexcept;

private:
    std::size_t spectrum_numbers() const noexcept { return 2 * block_frames(); }
    double* block(std::size_t channel, std::size_t input, std::size_t number) noexcept;
    double* filter_part(std::size_t input, std::size_t output, std::size_t part) noexcept;
    /// The spectrum that gathers the output of the block `ahead` blocks from now.
    double* gathered(std::size_t channel, std::size_t output, std::size_t ahead) noexcept;
    convolution convolution_of(std::size_t channel) noexcept;

    shape shape_;
    const vector_kernels* kernels_;
    right_angle_fft transform_;
    std::size_t parts_;
    std::size_t blocks_ = 0;          ///< done so far
    aligned_array<double> filters_;   ///< spectra by input, output and part
    aligned_array<double> blocks_in_; ///< two blocks by channel and input
    aligned_array<double> gathered_;  ///< spectra by channel, output and part
    aligned_array<double> spectra_;
    aligned_array<double> outputs_;
};

} // namespace kelvane::ssrc
