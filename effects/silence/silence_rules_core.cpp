#include "effects/silence/silence_rules_core.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr double segments_per_ms = 0.01;

} // namespace

silence_rules::silence_rules(std::uint32_t minimum_ms, bool keeps_initial) noexcept
    : lookahead_(static_cast<std::size_t>(std::max(1LL, std::llround(minimum_ms * segments_per_ms)))),
      kept_(keeps_initial ? lookahead_ : 0) {}

void silence_rules::note_silence(std::size_t segments) noexcept {
    known_silent_ = std::max(known_silent_, segments);
}

silence_verdict silence_rules::judge_next(bool is_last) noexcept {
    if (known_silent_ == 0) {
        emitted_silent_ = 0;
        return silence_verdict::pass;
    }
    --known_silent_;
    const bool audio_resumes = known_silent_ == 0 && !is_last;
    return audio_resumes ? end_silence() : go_on();
}

void silence_rules::reset() noexcept {
    known_silent_ = 0;
    emitted_silent_ = 0;
}

silence_verdict silence_rules::go_on() noexcept {
    if (emitted_silent_ > kept_) {
        return silence_verdict::drop;
    }
    ++emitted_silent_;
    return emitted_silent_ > kept_ ? silence_verdict::fade_out : silence_verdict::pass;
}

silence_verdict silence_rules::end_silence() noexcept {
    const bool was_cut = emitted_silent_ > kept_;
    emitted_silent_ = 0;
    return was_cut ? silence_verdict::fade_in : silence_verdict::pass;
}

} // namespace kelvane
