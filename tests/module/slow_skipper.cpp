#include "tests/module/slow_skipper.h"

#include <algorithm>
#include <cmath>

namespace testing_support {

namespace {

constexpr double pi = 3.141592653589793;
constexpr double half_pi = 1.5707963267948966;

double fade_out_gain(double t) {
    return (std::sin((1.0 - t) * pi - half_pi) + 1.0) * 0.5;
}

double fade_in_gain(double t) {
    return (std::sin(t * pi - half_pi) + 1.0) * 0.5;
}

void fade(programme& pieces, double (*gain)(double)) {
    double t = 0.0;
    for (stretch& piece : pieces) {
        for (std::size_t i = 0; i < piece.samples.size(); ++i) {
            piece.samples[i] *= gain(t);
            if (i % piece.format.channels == piece.format.channels - 1) {
                t += 1.0 / piece.format.sample_rate_hz;
            }
        }
    }
}

bool is_valid(const stretch& block) {
    return block.format.channels >= 1 && block.format.channels <= 32 && block.format.sample_rate_hz >= 1000 &&
           block.format.sample_rate_hz <= 20'000'000 && block.frames() >= 1;
}

} // namespace

slow_skipper::slow_skipper(const skipper_settings& chosen)
    : settings_(chosen),
      n_(static_cast<std::size_t>(std::max(1.0, std::floor(static_cast<double>(chosen.minimum_ms) * 0.01 + 0.5)))),
      k_(chosen.keeps_initial ? n_ : 0) {}

programme slow_skipper::take(const stretch& block) {
    programme out;
    if (!is_valid(block)) {
        return out;
    }
    cut_up(block);
    while (segments_.size() > 1 && is_loud(segments_.front())) {
        release(out);
    }
    while (segments_.size() > n_) {
        bool met_a_loud_one = false;
        const std::size_t count = silent_at_head(n_, met_a_loud_one);
        if (!met_a_loud_one) {
            known_silent_ = std::max(known_silent_, count);
        }
        release(out);
    }
    return out;
}

programme slow_skipper::end() {
    programme out;
    bool met_a_loud_one = false;
    const std::size_t count = silent_at_head(segments_.size(), met_a_loud_one);
    if (!met_a_loud_one) {
        known_silent_ = std::max(known_silent_, count);
    }
    while (!segments_.empty()) {
        release(out);
    }
    flush();
    return out;
}

void slow_skipper::flush() {
    segments_.clear();
    known_silent_ = 0;
    emitted_silent_ = 0;
}

double slow_skipper::latency_s() const {
    double sum = 0.0;
    for (const segment& one : segments_) {
        sum += one.duration;
    }
    return sum;
}

std::size_t slow_skipper::held_frames() const {
    std::size_t frames = 0;
    for (const segment& one : segments_) {
        frames += frames_of(one.pieces);
    }
    return frames;
}

bool slow_skipper::is_loud(const segment& one) const {
    return 20.0 * std::log10(std::max(one.peak, 5.960464477539063e-8)) >= static_cast<double>(settings_.threshold_db);
}

void slow_skipper::cut_up(const stretch& block) {
    std::size_t offset = 0;
    if (!segments_.empty()) {
        offset += fill(segments_.back(), block, offset);
    }
    while (offset < block.frames()) {
        segments_.emplace_back();
        offset += fill(segments_.back(), block, offset);
    }
}

/// Returns how many frames the segment took.
std::size_t slow_skipper::fill(segment& tail, const stretch& block, std::size_t offset_frames) const {
    const double rate = block.format.sample_rate_hz;
    if (tail.duration >= 0.1) {
        return 0;
    }
    const auto wanted = static_cast<std::size_t>(std::llround(rate * (0.1 - tail.duration)));
    const std::size_t take = std::min(wanted, block.frames() - offset_frames);
    if (take == 0) {
        return 0;
    }
    stretch piece{block.format, {}};
    for (std::size_t i = 0; i < take * block.format.channels; ++i) {
        const double sample = block.samples[offset_frames * block.format.channels + i];
        piece.samples.push_back(sample);
        if (std::fabs(sample) > tail.peak) { // never so for what is not a number
            tail.peak = std::fabs(sample);
        }
    }
    tail.pieces.push_back(piece);
    tail.duration += static_cast<double>(take) / rate;
    return take;
}

std::size_t slow_skipper::silent_at_head(std::size_t limit, bool& met_a_loud_one) const {
    std::size_t count = 0;
    for (const segment& one : segments_) {
        if (count == limit) {
            break;
        }
        if (is_loud(one)) {
            met_a_loud_one = true;
            break;
        }
        ++count;
    }
    return count;
}

void slow_skipper::release(programme& out) {
    segment head = segments_.front();
    const bool is_only = segments_.size() == 1;
    bool is_emitted = true;
    if (known_silent_ == 0) {
        emitted_silent_ = 0;
    } else {
        const bool is_last_known = known_silent_ == 1;
        known_silent_ -= 1;
        if (!is_last_known || is_only) {
            if (emitted_silent_ == k_) {
                fade(head.pieces, fade_out_gain);
            }
            is_emitted = emitted_silent_ <= k_;
            emitted_silent_ += is_emitted ? 1 : 0;
        } else {
            if (emitted_silent_ > k_) {
                fade(head.pieces, fade_in_gain);
            }
            emitted_silent_ = 0;
        }
    }
    if (is_emitted) {
        out.insert(out.end(), head.pieces.begin(), head.pieces.end());
    } else {
        dropped_frames_ += frames_of(head.pieces);
    }
    segments_.pop_front();
}

} // namespace testing_support
