// The crossfeed filter.
#pragma once

#include <cstdint>
#include <span>

namespace kelvane {

/// Mixes a low-passed part of the difference of left and right back into both, with the sign that makes them more
/// alike: headphone listening loses some of its separation at low frequencies, and keeps it at high ones.
///
/// Each side has a feedback term, a one-pole low-pass of the output difference with its corner at 2128 rad/s (339 Hz)
/// at every rate and the gain strength ÷ 2128 below it, applied one frame late. So the separation at low frequencies is
/// divided by 1 + 2 × strength ÷ 2128: 0.78 dB less at strength 100, 5.76 dB at 1000, 20.34 dB at 10000. Equal channels
/// stay equal. Where 2 × strength exceeds the rate the loop diverges; such settings are taken as they are.
///
/// The principle, crossfeed of the low-passed difference for headphones, is that of B. B. Bauer, "Stereophonic
/// Earphones and Binaural Loudspeakers", Journal of the Audio Engineering Society, 1961.
class crossfeed_core {
public:
    /// `rate_hz` is above 0; any strength is taken.
    crossfeed_core(std::int32_t strength, std::uint32_t rate_hz) noexcept;

    /// Filters stereo frames (left, right) in place.
    void process(std::span<double> interleaved) noexcept;

    /// Forgets the frames before.
    void reset() noexcept { state_ = state(); }

private:
    struct state {
        double left_term = 0.0;
        double right_term = 0.0;
        double difference = 0.0; ///< left - right of the last output frame
    };

    double decay_;  ///< of a term, per frame
    double uptake_; ///< of the difference into a term, per frame
    state state_;
};

} // namespace kelvane
