// "Skip Silence".
#pragma once

#include "effects/silence/silence_fade_core.h"
#include "effects/silence/silence_rules_core.h"
#include "effects/silence/silence_segments.h"
#include "effects/silence/silence_settings.h"
#include "frame/effect_base.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace kelvane {

/// Shortens long silences. All audio is cut into segments of a tenth of a second and leaves as new blocks, one for each
/// piece of a segment; the host's blocks leave the list, also one that is impossible and brings no audio (not
/// `is_valid_block`). Segments are released when a whole block has been cut up, so where a silence is cut depends on
/// where the blocks end. Loud audio waits for the next segment to begin only, and silence for the minimum that is
/// looked ahead. Runs across tracks; the end of playback lets all out.
///
/// A bad allocation of the host or an abort loses nothing. The block at hand has been taken up although it is still in
/// the list, and segments that have not come out are held as they were; at the end of playback that is all of them.
class silence_skipper final : public effect_base {
public:
    using settings = skip_silence_settings;
    static constexpr std::string_view display_name = "Skip Silence";

    explicit silence_skipper(const skip_silence_settings& chosen) noexcept
        : segments_(chosen.threshold_db), rules_(chosen.minimum_ms, chosen.keeps_initial) {}

    bool on_block(velmora::sample_block* block, velmora::abort_signal* abort) override;
    void on_playback_end(velmora::abort_signal*) override;
    void flush() override;
    double get_latency() override { return segments_.duration_s(); }

private:
    void cut_up(velmora::sample_block& block);
    std::size_t fill_last_segment(std::span<const double> samples, const stream_format& format);
    void release_loud(velmora::abort_signal& abort);
    void release_beyond_lookahead(velmora::abort_signal& abort);
    void release_head();
    void emit_segment(std::size_t index, silence_verdict verdict);
    void emit_unchanged(std::size_t index);
    void emit_faded(std::size_t index, silence_fade fade);

    silence_segments segments_;
    silence_rules rules_;
};

} // namespace kelvane
