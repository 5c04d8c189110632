// One stream through the windowed-sinc converter, from its first frame to its last.
#pragma once

#include "effects/resampler_sinc/frame_counts.h"
#include "effects/resampler_sinc/sinc_resampler_core.h"
#include "frame/sample_buffer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace kelvane {

/// Gives the converter what it needs around a stream: a pre-roll, so that the stream starts without its delay and
/// without a ramp, and a run-out, so that it ends with its last frame. Between them the newest frames are held back,
/// for the run-out goes on from them. As many frames come out as belong to the time that went in.
class sinc_stream {
public:
    /// Takes converted frames, at least one; what it throws passes through.
    using sink = std::function<void(std::span<const double>)>;

    /// Throws `bad_allocation` when no converter can be made for the rates, or memory is short.
    sinc_stream(std::uint32_t input_hz, std::uint32_t target_hz, std::uint32_t channels, std::uint32_t quality);

    /// Takes interleaved frames in. Nothing comes out before the first 1024 are there. An exception, of `out` or a
    /// `bad_allocation`, leaves the stream half advanced: it is then good for nothing but to be destroyed.
    void push(std::span<const double> frames, const sink& out);

    /// How many frames `finish` has to give. Throws `bad_allocation` when no memory holds so many.
    std::size_t due_frames() const { return kelvane::due_frames(totals_, channels_); }

    /// Fills `out`, which has room for `due_frames()`, with them. The stream takes nothing more.
    void finish(std::span<double> out);

    /// Goes on somewhere else, as after a seek: what is held is forgotten, no pre-roll follows, and the converter keeps
    /// the frames in its window.
    void rewind() noexcept;

    /// What has gone in and not come out, in seconds.
    double latency_s() const noexcept { return kelvane::latency_s(totals_); }

private:
    std::span<double> held() noexcept { return {held_.data(), held_frames_ * channels_}; }
    std::size_t frames_in(std::span<const double> samples) const noexcept { return samples.size() / channels_; }
    std::span<const double> hold(std::span<const double> frames) noexcept;
    void release(std::size_t frames) noexcept;
    std::span<const double> prime();
    std::size_t start_delay_frames() const;
    std::size_t input_frames_for(std::size_t output_frames) const noexcept;
    void push_out(std::span<double> tail, std::span<double> out);
    void make_room(std::size_t input_frames);
    std::span<const double> convert(std::span<const double> frames);
    void give(std::span<const double> made, const sink& out);
    static std::span<double> put(std::span<const double> made, std::span<double> room) noexcept;

    stream_totals totals_;
    std::size_t channels_;
    std::unique_ptr<sinc_resampler> resampler_;
    bool is_primed_ = false;
    std::size_t discarded_frames_ = 0; ///< of the output, still to come
    sample_buffer held_;
    std::size_t held_frames_ = 0;
    sample_buffer edge_; ///< pre-roll or run-out
    sample_buffer converted_;
    std::size_t planned_frames_ = 0; ///< the longest input that `converted_` has room for the output of
};

} // namespace kelvane
