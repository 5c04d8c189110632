#include "effects/silence/silence_fade_core.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace kelvane {

void silence_fade::process(std::span<double> interleaved, std::uint32_t channels, std::uint32_t rate_hz) noexcept {
    const double frame_s = 1.0 / rate_hz;
    for (std::size_t frame = 0; frame < interleaved.size(); frame += channels) {
        const double now = gain();
        for (double& sample : interleaved.subspan(frame, channels)) {
            sample *= now;
        }
        elapsed_s_ += frame_s;
    }
}

double silence_fade::gain() const noexcept {
    const double place_s = way_ == direction::out ? 1.0 - elapsed_s_ : elapsed_s_;
    return (std::sin(place_s * std::numbers::pi - std::numbers::pi / 2.0) + 1.0) * 0.5;
}

} // namespace kelvane
