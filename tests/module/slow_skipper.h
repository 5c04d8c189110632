// The silence skipper once more, slowly: lists and loops, nothing remembered that can be counted again.
#pragma once

#include "tests/module/run_effect.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

namespace testing_support {

struct skipper_settings {
    std::uint32_t minimum_ms = 5000;
    std::int32_t threshold_db = -60;
    bool keeps_initial = true;
};

/// Gives the blocks that the effect has to emit, with the bits that they have to have, and counts what it drops.
class slow_skipper {
public:
    explicit slow_skipper(const skipper_settings& chosen);

    /// What comes out while a block goes in. A block that is not valid gives and changes nothing.
    programme take(const stretch& block);

    /// What comes out at the end of playback.
    programme end();

    void flush();

    double latency_s() const;
    std::size_t held_frames() const;
    std::size_t dropped_frames() const { return dropped_frames_; }

private:
    struct segment {
        programme pieces;
        double duration = 0.0;
        double peak = 0.0;
    };

    bool is_loud(const segment& one) const;
    void cut_up(const stretch& block);
    std::size_t fill(segment& tail, const stretch& block, std::size_t offset_frames) const;
    std::size_t silent_at_head(std::size_t limit, bool& met_a_loud_one) const;
    void release(programme& out);

    skipper_settings settings_;
    std::size_t n_;
    std::size_t k_;
    std::list<segment> segments_;
    std::size_t known_silent_ = 0;
    std::size_t emitted_silent_ = 0;
    std::size_t dropped_frames_ = 0;
};

} // namespace testing_support
