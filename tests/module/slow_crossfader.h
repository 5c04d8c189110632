// "Crossfader" written down as plainly as it goes, to hold the module's against.
#pragma once

#include "tests/module/run_effect.h"

#include <cstddef>
#include <list>
#include <vector>

namespace testing_support {

/// Takes frame after frame through lists. What comes out is joined into stretches of one format.
class slow_crossfader {
public:
    explicit slow_crossfader(double fade_s) : fade_s_(fade_s) {}

    void take(const stretch& block);
    void change_track();
    void end_playback();
    void flush();

    double latency_s() const;

    const programme& out() const { return out_; }

    // Where every frame went that did not come out alone: counted frame by frame.
    std::size_t mixed_frames = 0;     ///< pairs that came out as one frame
    std::size_t dropped_frames = 0;   ///< left of an old track when playback ended within a fade
    std::size_t forgotten_frames = 0; ///< held when a flush came

private:
    using frame = std::vector<double>;
    enum class fade_state { idle, armed, running };

    void take(const frame& taken, const block_format& format);
    void mix(const frame& fresh);
    void hold(const frame& taken, const block_format& format);
    void adopt(const block_format& format);
    void emit_oldest();
    void emit(const frame& emitted, const block_format& format);

    double fade_s_;
    block_format format_{};
    std::list<frame> held_;
    std::size_t capacity_frames_ = 0;
    fade_state fade_ = fade_state::idle;
    std::size_t fade_frame_ = 0;
    std::size_t fade_frames_ = 0;
    programme out_;
};

} // namespace testing_support
