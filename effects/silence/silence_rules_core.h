// Which segments of a silence stay.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvane {

/// What becomes of a segment that is released.
enum class silence_verdict { pass, fade_out, fade_in, drop };

/// Judges segments one after the other as they leave the head of the queue. A run of silence that is long enough keeps
/// its beginning (if that is wanted), then comes one segment that fades out, the rest is dropped, and the last one,
/// behind which the audio resumes, fades in.
class silence_rules {
public:
    /// A silence is long when it lasts `minimum_ms`, rounded to tenths of a second and at least one tenth. With
    /// `keeps_initial` that much of it stays.
    silence_rules(std::uint32_t minimum_ms, bool keeps_initial) noexcept;

    /// Segments in the minimum; as many are looked at before the head of the queue is released.
    std::size_t lookahead_segments() const noexcept { return lookahead_; }

    /// At least so many of the next segments belong to a long silence.
    void note_silence(std::size_t segments) noexcept;

    /// Judges the segment behind those judged before; `is_last` when nothing follows it.
    silence_verdict judge_next(bool is_last) noexcept;

    /// Forgets the segments before.
    void reset() noexcept;

private:
    silence_verdict go_on() noexcept;
    silence_verdict end_silence() noexcept;

    std::size_t lookahead_;
    std::size_t kept_; ///< segments of a long silence that stay before it fades out
    std::size_t known_silent_ = 0;
    std::size_t emitted_silent_ = 0; ///< of the current long silence
};

} // namespace kelvane
