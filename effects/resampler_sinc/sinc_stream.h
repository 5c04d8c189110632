// One stream through the windowed-sinc converter, from its first frame to its last.
#pragma once

#include "effects/resampler_sinc/sinc_resampler_core.h"
#include "frame/sample_buffer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
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

    /// Takes interleaved frames in. Nothing comes out before the first 1024 are there.
    void push(std::span<const double> frames, const sink& out);

    /// Gives out what is still due. The stream takes nothing more.
    void finish(const sink& out);

    /// Goes on somewhere else, as after a seek: what is held is forgotten, no pre-roll follows, and the converter keeps
    /// the frames in its window.
    void rewind() noexcept;

    /// What has gone in and not come out, in seconds.
    double latency_s() const noexcept;

private:
    static constexpr std::uint64_t no_end = std::numeric_limits<std::uint64_t>::max();

    std::span<double> held() noexcept { return {held_.data(), held_frames_ * channels_}; }
    std::size_t frames_in(std::span<const double> samples) const noexcept { return samples.size() / channels_; }
    std::span<const double> hold(std::span<const double> frames) noexcept;
    void release(std::size_t frames) noexcept;
    void prime(const sink& out);
    std::uint64_t start_delay_frames() const;
    std::uint64_t due_frames() const noexcept;
    std::size_t input_frames_for(std::uint64_t output_frames) const noexcept;
    void push_out(std::span<double> tail, std::uint64_t last_frame, const sink& out);
    void make_room(std::size_t input_frames);
    void convert(std::span<const double> frames, const sink& out, std::uint64_t last_frame = no_end);

    std::uint32_t input_hz_;
    std::uint32_t target_hz_;
    std::size_t channels_;
    std::unique_ptr<sinc_resampler> resampler_;
    bool is_primed_ = false;
    std::uint64_t total_in_frames_ = 0;
    std::uint64_t total_out_frames_ = 0;
    std::uint64_t discarded_frames_ = 0; ///< of the output, still to come
    sample_buffer held_;
    std::size_t held_frames_ = 0;
    sample_buffer edge_; ///< pre-roll or run-out
    sample_buffer converted_;
    std::size_t planned_frames_ = 0; ///< the longest input that `converted_` has room for the output of
};

} // namespace kelvane
