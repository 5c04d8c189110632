// The fades at both ends of a cut.
#pragma once

#include <cstdint>
#include <span>

namespace kelvane {

/// A raised cosine over one second from its first frame, the same gain for all channels of a frame. A segment lasts a
/// tenth of that: fading out it ends at 0.976 of its level, and fading in it goes from nothing to 0.024. What is faded
/// lies below the threshold of silence; the long curve keeps its slope gentle.
class silence_fade {
public:
    enum class direction { out, in };

    explicit silence_fade(direction way) noexcept : way_(way) {}

    /// Fades whole frames in place. The next call goes on where this one ended, also at another rate.
    void process(std::span<double> interleaved, std::uint32_t channels, std::uint32_t rate_hz) noexcept;

private:
    double gain() const noexcept;

    direction way_;
    double elapsed_s_ = 0.0;
};

} // namespace kelvane
