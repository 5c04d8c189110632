// "Advanced Limiter": a look-ahead peak limiter at full scale.
#pragma once

#include "effects/limiters/advanced_limiter_core.h"
#include "frame/effect_base.h"

#include <memory>
#include <span>
#include <string_view>

namespace kelvane {

/// Holds back the first 255 frames of a stream and gives them out when the format changes, in a block of the old
/// format, or at the end of playback: as many frames come out as went in. Runs straight through the ends of tracks.
class advanced_limiter final : public effect_base {
public:
    static constexpr velmora::guid identity{
        0x11B13A25, 0xC282, 0x41F6, {0xB1, 0xF0, 0xCE, 0xB7, 0xEC, 0xBC, 0xEA, 0xA8}};
    static constexpr std::string_view display_name = "Advanced Limiter";

    bool on_block(velmora::sample_block* block, velmora::abort_signal*) override;
    void on_playback_end(velmora::abort_signal*) override;
    void flush() override;
    double get_latency() override;

private:
    void follow_format(const stream_format& format);
    void make_channels(std::uint32_t channels);
    std::span<limiter_channel_pair> pairs() noexcept { return {pairs_.get(), pair_count_}; }
    void limit(velmora::sample_block& block);
    void drain();
    void push_silence(std::span<double> pushed_out);

    std::unique_ptr<limiter_channel_pair[]> pairs_;
    std::size_t pair_count_ = 0; ///< for the most channels so far
    bool is_running_ = false;    ///< the format is known, and the channels are its channels
    stream_format format_;
    std::size_t held_frames_ = 0; ///< at most `limiter_look_ahead_frames`
};

} // namespace kelvane
