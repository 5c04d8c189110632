// The windowed-sinc converter as one writes it down: frame by frame, on rings that hold everything twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace testing_support {

/// Coefficients, and deltas with a Kaiser window, of one level and ratio.
class literal_sinc_table {
public:
    literal_sinc_table(std::uint32_t quality, double ratio);

    std::uint32_t taps() const { return taps_; }
    float coefficient(std::uint32_t phase, std::uint32_t tap) const { return coefficients_[phase * taps_ + tap]; }

    /// What the coefficient grows by to the next phase; 0 with a Lanczos window.
    float delta(std::uint32_t phase, std::uint32_t tap) const;

private:
    float value(std::uint32_t phase, std::uint32_t tap) const;

    std::uint32_t quality_;
    double cutoff_;
    std::uint32_t taps_;
    double norm_;
    std::vector<float> coefficients_;     ///< row by row
    std::vector<float> one_past_the_end_; ///< the row behind the last
};

/// The truth that the converter is held against.
class literal_sinc_resampler {
public:
    literal_sinc_resampler(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t channels,
                           std::uint32_t quality);

    /// With a table for these rates and quality, to share it between counts of channels.
    literal_sinc_resampler(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t channels,
                           std::uint32_t quality, std::shared_ptr<const literal_sinc_table> table);

    std::vector<double> process(const std::vector<double>& interleaved);
    void rewind();

    std::uint32_t taps() const { return table_->taps(); }
    std::uint64_t step() const { return step_; }

private:
    void push(const double* frame);
    void append_frame(std::vector<double>& out) const;
    float sample(std::uint32_t channel) const;

    std::uint32_t quality_;
    std::uint32_t channels_;
    std::shared_ptr<const literal_sinc_table> table_;
    std::uint64_t total_; ///< one input frame in time
    std::uint64_t step_;
    std::uint64_t time_ = 0;
    std::uint32_t skip_;
    std::uint32_t position_ = 0;
    std::vector<std::vector<float>> rings_; ///< 2 x taps each
};

} // namespace testing_support
