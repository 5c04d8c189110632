// "Crossfader".
#pragma once

#include "effects/crossfade/crossfader_settings.h"
#include "effects/crossfade/linear_fade_core.h"
#include "effects/crossfade/sample_ring_core.h"
#include "frame/effect_base.h"
#include "frame/sample_buffer.h"

#include <span>
#include <string_view>

namespace kelvane {

/// Holds the newest audio back, as much as a fade is long, so that the end of a track is still there when the next one
/// begins: the two are then mixed, and what is mixed goes out at once. Behind the fade the ring fills again.
///
/// Each frame comes out once, alone or mixed with one other, save for two: a flush forgets what is held, and playback
/// that ends within a fade drops what is left of the old track. A change of the format gives up the fade and lets the
/// old audio out as it is. Blocks of a rate so low that a fade has no frame pass.
///
/// A bad allocation of the host loses no frame, and a block that is brought again repeats none.
class crossfader_effect final : public effect_base {
public:
    using settings = crossfader_settings;
    static constexpr std::string_view display_name = "Crossfader";

    explicit crossfader_effect(const crossfader_settings& chosen) noexcept : fade_s_(chosen.fade_s()) {}

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    bool needs_track_change_mark() override { return true; }
    void on_track_end(velmora::abort_signal*) override { fade_.arm(); }
    void on_playback_end(velmora::abort_signal*) override;
    void flush() override;
    double get_latency() override;

private:
    bool fade_into(std::span<double> incoming);
    void follow_format(const stream_format& format);
    void delay(std::span<const double> samples);
    void emit_displaced_by(std::span<const double> samples);
    void emit_joined(std::span<const double> first, std::span<const double> second);
    void emit_held();

    double fade_s_;
    stream_format format_; ///< of what is held; none before the first block and after a flush
    sample_buffer storage_;
    sample_ring held_; ///< in the storage
    linear_fade fade_;
};

} // namespace kelvane
