// The look-ahead limiter.
#pragma once

#include "effects/double_pair_core.h"

#include <array>
#include <cstddef>
#include <span>

namespace kelvane {

/// How much later a frame comes out than it goes in.
inline constexpr std::size_t limiter_look_ahead_frames = 255;

/// Limits two channels side by side, each for itself, to a ceiling of 1.0 (full scale).
///
/// The audio is delayed by `limiter_look_ahead_frames`. The largest magnitude among the delayed sample and all that are
/// behind it in the delay sets the gain that is aimed at, ceiling ÷ peak or 1.0; the aim follows by a one-pole low-pass
/// of 10 frames. The applied gain rises towards unity by one of 1000 frames and never above the aim; a last clamp holds
/// what the aim has not caught up with. At rest the gain settles at about 0.99999978, because the constants are those
/// of single precision.
///
/// A sample that is infinite or not a number makes one output sample that is not a number; an infinite one also takes
/// the gain to zero. Neither stays in the limiter.
///
/// The running maximum costs two comparisons a frame whatever its length: the frames stand in rounds of 256, the window
/// reaches from somewhere in the last round to somewhere in this one, and the maxima from each frame to the end of its
/// round are known when the round ends. M. van Herk, "A fast algorithm for local minimum and maximum filters on
/// rectangular and octagonal kernels", Pattern Recognition Letters, 1992.
class limiter_channel_pair {
public:
    /// Limits in place two neighbouring channels of interleaved frames of `channels` ≥ 2 channels: writes over the
    /// samples of each frame those of the frame that came `limiter_look_ahead_frames` before, or 0.0.
    void process_two(double* first, std::size_t frames, std::size_t channels) noexcept;

    /// Limits a single channel in the same way.
    void process_one(double* first, std::size_t frames, std::size_t channels) noexcept;

    /// Forgets all audio, and the gain returns to 1.0.
    void reset() noexcept { *this = limiter_channel_pair(); }

private:
    static constexpr std::size_t round_frames = limiter_look_ahead_frames + 1;

    template <class Lanes>
    void process(double* first, std::size_t frames, std::size_t channels) noexcept;
    template <class Lanes>
    std::size_t scale_while_quiet(double* first, std::size_t frames, std::size_t channels) noexcept;
    template <class Lanes, std::size_t Frames>
    bool scale_if_quiet(double* first, std::size_t channels) noexcept;
    template <class Lanes>
    void limit(double* first, std::size_t frames, std::size_t channels) noexcept;
    bool is_at_rest() const noexcept;
    void end_round() noexcept;

    std::array<double_pair, round_frames + 1> delay_{};        ///< ring, with its first frame again behind its last
    std::array<double_pair, round_frames + 1> peaks_to_end_{}; ///< of the last round: from this place on
    std::size_t place_ = 0;                                    ///< in the ring and in the round
    double_pair round_peak_{};                                 ///< of this round so far
    bool was_loud_ = false;                                    ///< the last round had a peak above the ceiling
    double_pair gain_ = both(1.0);
    double_pair aim_ = both(1.0);
};

/// Limits whole interleaved frames in place; `pairs` holds a state for every two of the `channels`, rounded up, at
/// least.
void limit_frames(std::span<limiter_channel_pair> pairs, std::span<double> interleaved, std::size_t channels) noexcept;

} // namespace kelvane
