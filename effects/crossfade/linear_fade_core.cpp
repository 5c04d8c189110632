#include "effects/crossfade/linear_fade_core.h"

#include <algorithm>

namespace kelvane {

void linear_fade::arm() noexcept {
    if (is_idle()) {
        position_frames_ = 0;
    }
}

std::size_t linear_fade::mix(sample_ring& held, std::span<double> incoming, std::size_t channels) noexcept {
    // What is still to come and what has been mixed: the same sum in each call of one fade.
    const auto total_frames = static_cast<double>(position_frames_ + held.fill() / channels);
    const std::size_t mixed = std::min(incoming.size(), held.fill());
    for (std::span<double> left = incoming.first(mixed); !left.empty();) {
        const std::span<const double> oldest = held.oldest();
        const std::size_t piece = std::min(left.size(), oldest.size());
        mix_piece(oldest.first(piece), left.first(piece), channels, total_frames);
        held.drop_oldest(piece);
        left = left.subspan(piece);
    }
    return mixed;
}

void linear_fade::mix_piece(std::span<const double> old_track, std::span<double> new_track, std::size_t channels,
                            double total_frames) noexcept {
    for (std::size_t frame = 0; frame < old_track.size(); frame += channels) {
        const double weight = static_cast<double>(position_frames_) / total_frames;
        ++position_frames_;
        for (std::size_t i = frame; i < frame + channels; ++i) {
            new_track[i] = (new_track[i] - old_track[i]) * weight + old_track[i]; // the order decides the last bit
        }
    }
}

} // namespace kelvane
