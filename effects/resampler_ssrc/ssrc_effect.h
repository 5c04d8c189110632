// "Resampler (dBpoweramp/SSRC)".
#pragma once

#include "effects/resampler_ssrc/ssrc_converter.h"
#include "effects/resampler_ssrc/ssrc_settings.h"
#include "frame/effect_base.h"
#include "frame/rate_exclusion_list.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kelvane {

/// Converts every stream to one sample rate; speakers stay. Rates that the settings exclude pass, and so do the target
/// rate itself and rates in a ratio to it that the converter refuses. The end of a stream comes out when the format
/// changes, in blocks of the old speakers, or at the end of playback; the ends of tracks change nothing.
class ssrc_resampler final : public effect_base {
public:
    using settings = ssrc_settings;
    static constexpr std::string_view display_name = "Resampler (dBpoweramp/SSRC)";

    /// Equal rates are, if they are not 0.
    static bool is_conversion_supported(std::uint32_t source_hz, std::uint32_t target_hz) noexcept;

    explicit ssrc_resampler(const ssrc_settings& chosen);

    /// Takes a block without frames out of the list; one that claims samples which it does not have passes.
    ///
    /// Throws `mox::exception_invalid_params` for a target rate out of its range, `mox::exception_overflow` for a block
    /// whose size in bytes leaves 32 bits (the stream goes on behind it), `bad_allocation` when there is no memory for
    /// a converter, and a `std::runtime_error` when there is none for its output.
    ///
    /// Of a stream in whose middle the conversion or the host failed, what is held is dropped; the next block begins
    /// another one.
    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    void on_playback_end(velmora::abort_signal*) override;
    void flush() override;
    double get_latency() override;

private:
    void follow_format(const stream_format& format);
    bool is_left_alone(std::uint32_t rate_hz) const;
    bool set_up_for(const stream_format& format);
    void end_stream();
    bool holds_frames_back() const noexcept;
    void convert(std::span<const double> samples, bool is_last);
    void emit_output();

    std::uint32_t target_hz_;
    rate_exclusion_list exclusions_;
    stream_format format_; ///< without a rate when there is no stream
    bool passes_ = false;  ///< whether the stream is left as it is
    ssrc::ssrc_converter converter_;
    std::uint64_t frames_in_ = 0; ///< of the stream, into the converter
    std::uint64_t frames_out_ = 0;
};

} // namespace kelvane
