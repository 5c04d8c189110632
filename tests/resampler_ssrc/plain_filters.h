// The converter's design written down a second time, from its formulas, in extended precision.
#pragma once

#include <cstdint>
#include <vector>

namespace plain_form {

/// Everything that a pair of rates settles. For pairs that can be converted, at the quality 16384, 16384, 170, 100.
struct design {
    design(std::uint64_t input_hz, std::uint64_t output_hz);

    bool goes_up;
    std::uint64_t input_hz;
    std::uint64_t output_hz;
    std::uint64_t common_hz;
    std::uint64_t osf;       ///< oversampling factor
    std::uint64_t filter_hz; ///< of the long filter
    std::uint64_t filter_taps;
    std::uint64_t fft_size;
    std::uint64_t phases;
    std::uint64_t stage_length; ///< of the polyphase prototype
    std::uint64_t taps_per_phase;
    std::uint64_t discard_frames;

    std::uint64_t stage_gap_hz() const;    ///< of the polyphase stage's transition band
    double width_hz() const;               ///< of the long filter's transition band
    double cutoff_hz() const;              ///< its middle
    std::vector<double> filter() const;    ///< with the gain that makes up for zero-stuffing
    std::vector<double> prototype() const; ///< times the number of phases
};

} // namespace plain_form
