// The conversion in its plain form: one long transform per chunk, overlap-add, and no step saved.
// The converter's own layout is faster and has to give the same samples.
#pragma once

#include "effects/resampler_ssrc/real_fft.h"
#include "tests/resampler_ssrc/plain_filters.h"

#include <cstdint>
#include <vector>

namespace plain_form {

/// One channel. Calls of `process` up to the one with `is_last` make one stream.
class converter {
public:
    converter(std::uint64_t input_hz, std::uint64_t output_hz);

    std::vector<double> process(const std::vector<double>& input, bool is_last);

private:
    std::size_t chunk_frames() const;
    std::vector<double> up(const std::vector<double>& chunk);
    std::vector<double> down(const std::vector<double>& chunk);
    double stage_value() const;
    void filter(std::vector<double>& values);
    void emit(const std::vector<double>& made, std::vector<double>& to);

    design design_;
    std::vector<double> prototype_;
    kelvane::ssrc::real_fft fft_;
    std::vector<double> spectrum_;
    std::vector<double> queue_;
    std::vector<double> stage_; ///< what the polyphase stage reads
    std::vector<double> carry_; ///< overlap of the long filter
    std::uint64_t position_ticks_ = 0;
    std::uint64_t offset_ = 0; ///< up: of the decimation; down: of the zero-stuffing
    std::uint64_t to_discard_;
    std::uint64_t frames_in_ = 0;
    std::uint64_t frames_out_ = 0;
};

} // namespace plain_form
