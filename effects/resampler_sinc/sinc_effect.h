// "Resampler (RetroArch)".
#pragma once

#include "effects/resampler_sinc/sinc_settings.h"
#include "effects/resampler_sinc/sinc_stream.h"
#include "frame/effect_base.h"
#include "frame/rate_exclusion_list.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvane {

/// Converts every stream to one sample rate; speakers stay. Rates that the settings exclude pass, with a notice on the
/// host's console, and so does the target rate itself. The end of a stream comes out when the format changes, in a
/// block of the old speakers, or at the end of playback; the ends of tracks change nothing. Of what comes of a block,
/// and of the end of a stream, all is emitted or, when an exception passes, nothing; the stream is then lost.
class sinc_resampler_effect final : public effect_base {
public:
    using settings = sinc_settings;
    static constexpr std::string_view display_name = "Resampler (RetroArch)";

    static bool is_conversion_supported(std::uint32_t source_hz, std::uint32_t target_hz) noexcept;

    explicit sinc_resampler_effect(const sinc_settings& chosen);

    /// Takes a block without samples, or without those that it claims, out of the list. Throws `bad_allocation` when
    /// the block's rate cannot be converted.
    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    void on_playback_end(velmora::abort_signal*) override;
    void flush() override;
    double get_latency() override;

private:
    void follow_format(const stream_format& format);
    void open_stream(const stream_format& format);
    void end_stream();
    void emit_rest();
    void drop_stream() noexcept;
    template <class Emit>
    void emit_or_drop_stream(Emit emit);
    sinc_stream::sink emission();
    stream_format output_format() const noexcept;

    std::uint32_t target_hz_;
    std::uint32_t quality_;
    rate_exclusion_list exclusions_;
    stream_format format_;              ///< without a rate before the first block
    std::optional<sinc_stream> stream_; ///< none in a format that passes
};

} // namespace kelvane
