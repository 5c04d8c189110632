// The windowed-sinc converter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kelvane {

struct sinc_quality;

/// Converts interleaved frames from one rate to another. Output does not depend on how the input is cut into calls.
class sinc_resampler {
public:
    /// Whether a converter can be made: neither rate 0, and the two limits.
    static bool is_feasible(std::uint32_t input_hz, std::uint32_t output_hz, std::uint32_t quality) noexcept;

    /// Null when it is not feasible or memory is short. `channels` is at least 1.
    static std::unique_ptr<sinc_resampler> create(std::uint32_t input_hz, std::uint32_t output_hz,
                                                  std::uint32_t channels, std::uint32_t quality) noexcept;

    /// Consumes all frames of `in` (whole interleaved frames) and writes the output frames to the start of `out`,
    /// which has room for them (2 x ratio x frames + 1 frames is always enough). Answers the frames written.
    std::size_t process(std::span<const double> in, std::span<double> out) noexcept;

    /// For a seek: position and time to 0, the start-up skip as at creation; the history stays (rotated).
    void rewind() noexcept;

    std::uint32_t taps() const noexcept { return taps_; }
    double ratio() const noexcept { return ratio_; }

private:
    sinc_resampler(const sinc_quality& quality, double ratio, std::uint32_t channels);
    void push(const double* frame) noexcept;
    void compute(double* frame) const noexcept;

    const sinc_quality& quality_;
    double ratio_;
    std::uint32_t channels_;
    std::uint32_t taps_;
    std::uint32_t position_ = 0;
    std::uint32_t skip_;
    std::uint64_t time_ = 0;
    std::vector<float> table_;
    std::vector<float> history_;
};

} // namespace kelvane
