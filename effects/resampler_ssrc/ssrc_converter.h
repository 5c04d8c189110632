// The FFT sample-rate converter.
#pragma once

#include "effects/resampler_ssrc/aligned_array.h"
#include "effects/resampler_ssrc/down_path.h"
#include "effects/resampler_ssrc/filter_design.h"
#include "effects/resampler_ssrc/sample_format.h"
#include "effects/resampler_ssrc/up_path.h"
#include "effects/resampler_ssrc/vector_kernels.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

namespace kelvane::ssrc {

/// Converts a stream of interleaved samples from one rate to another in a rational ratio to it, with a sharp
/// linear-phase filter applied by fast convolution and a short polyphase filter.
///
/// The output of a whole stream has the length of the input: floor(frames x output rate ÷ input rate) frames, aligned
/// with it in time. The same stream gives the same bits however it is cut into calls, on processors of any vector
/// width, and for each channel as if it were alone.
class ssrc_converter {
public:
    /// Gets ready for a stream; what there was before is gone. False, and empty, when the description names no samples
    /// that can be read, one of the rates, the channel count or a number of the quality is 0, or the pair of rates
    /// cannot be converted (rate_plan.h). Throws `bad_allocation`, and is then empty.
    bool set_up(const wave_format& input, std::uint32_t output_hz, const converter_quality& quality,
                const vector_kernels& kernels = best_kernels());

    /// Whether a set-up for these rates and any proper description and quality would succeed.
    static bool is_conversion_supported(std::uint32_t input_hz, std::uint32_t output_hz) noexcept;

    /// Frees all memory and forgets the stream.
    void destroy() noexcept;

    /// Takes the next whole frames of the stream; `is_last` ends it, and the next call begins another one like it.
    /// False when there was no set-up, `input` is not whole frames, or there is no memory for the output: the call has
    /// then changed nothing but `output`, which is empty.
    bool process(std::span<const std::byte> input, bool is_last);

    /// What the last call of `process` made, in the input's format. Valid until the next one.
    std::span<const std::byte> output() const noexcept { return {output_.data(), output_bytes_}; }

    std::uint32_t output_hz() const noexcept { return output_hz_; }

private:
    using conversion_path = std::variant<std::monostate, up_path, down_path>;

    bool make_room(std::uint64_t frames) noexcept;
    bool allocate_output(std::uint64_t frames) noexcept;
    /// The length of the whole output, if the stream ended with these frames of input.
    std::uint64_t promised_frames(std::uint64_t input_frames) const noexcept;

    bool copy(std::span<const std::byte> input, std::size_t frames) noexcept;
    template <class Path>
    void convert(Path& path, const std::byte* frames, std::size_t count);
    template <class Path>
    void flush(Path& path);
    template <class Path>
    void run_block(Path& path);
    void emit(std::span<const double> block, std::size_t channel) noexcept;
    void hand_out() noexcept;
    void take_back_output() noexcept;
    std::size_t held_bytes() const noexcept {
        return static_cast<std::size_t>(frames_made_ - frames_out_) * frame_bytes_;
    }
    void begin_stream() noexcept;

    std::uint32_t input_hz_ = 0;
    std::uint32_t output_hz_ = 0;
    std::size_t channels_ = 0; ///< 0: there was no set-up
    sample_code code_ = sample_code::float64;
    std::size_t frame_bytes_ = 0;
    conversion_path path_;

    std::uint64_t frames_in_ = 0;
    std::uint64_t frames_made_ = 0; ///< without those discarded
    std::uint64_t frames_out_ = 0;  ///< of them, handed out
    std::size_t frames_to_discard_ = 0;

    aligned_array<std::byte> output_;
    std::size_t output_bytes_ = 0;
};

} // namespace kelvane::ssrc
