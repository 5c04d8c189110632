// The ramp from one track into the next.
#pragma once

#include "effects/crossfade/sample_ring_core.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace kelvane {

/// A fade of equal gain (the weights of old and new add up to 1 in each frame), as long as what is held of the old
/// track when it begins: with N frames held the new track's weight runs 0, 1/N ... (N - 1)/N. The linear cross-fade is
/// the plainest of the curves in U. Zölzer (ed.), "DAFX: Digital Audio Effects", 2nd edition, 2011.
///
/// It is idle; armed, from a change of track to the first frame that is mixed; or running, until `end`.
class linear_fade {
public:
    bool is_idle() const noexcept { return position_frames_ == idle; }
    bool is_running() const noexcept { return !is_idle() && position_frames_ != 0; }

    /// The track changes. A fade that is armed or running stays as it is: it is not begun again by a track that is
    /// shorter than the fade.
    void arm() noexcept;

    void end() noexcept { position_frames_ = idle; }

    /// Mixes the oldest frames of `held` into those of `incoming`, in place and from its first on, as long as both
    /// last, and drops them from `held`. Only for a fade that is not idle; both hold whole frames of `channels`
    /// samples. Returns the number of samples mixed.
    std::size_t mix(sample_ring& held, std::span<double> incoming, std::size_t channels) noexcept;

private:
    static constexpr std::uint64_t idle = std::numeric_limits<std::uint64_t>::max();

    void mix_piece(std::span<const double> old_track, std::span<double> new_track, std::size_t channels,
                   double total_frames) noexcept;

    std::uint64_t position_frames_ = idle; ///< frames mixed so far
};

} // namespace kelvane
