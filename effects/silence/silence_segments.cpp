#include "effects/silence/silence_segments.h"

#include <algorithm>

namespace kelvane {

namespace {

/// Room for a whole segment is taken at once up to this size, which is that of 32 channels at 192 kHz and more. Beyond
/// it a segment of strange format grows as its audio comes.
constexpr std::size_t largest_advance_samples = 1'048'576;

} // namespace

std::size_t silence_segments::room_frames(std::uint32_t rate_hz) noexcept {
    return segments_.empty() ? 0 : segments_.back().measure.room_frames(rate_hz);
}

void silence_segments::start() {
    const std::size_t pieces_before = segments_.empty() ? 0 : segments_.back().first_piece + segments_.back().pieces;
    segment& started = segments_.push();
    started.measure = {};
    started.first_piece = pieces_before;
    started.pieces = 0;
    started.samples = 0;
}

void silence_segments::append(std::span<const double> samples, const stream_format& format, double peak) {
    segment& last = segments_.back();
    make_room(last, samples.size(), last.measure.room_frames(format.sample_rate_hz) * format.channels);
    pieces_.push() = {format, samples.size()};
    std::copy(samples.begin(), samples.end(), last.memory.data() + last.samples);
    last.samples += samples.size();
    last.pieces += 1;
    last.measure.add(samples.size() / format.channels, format.sample_rate_hz, peak);
}

void silence_segments::make_room(segment& grown, std::size_t samples, std::size_t samples_to_come) {
    const std::size_t needed = grown.samples + samples;
    if (needed > grown.memory.capacity()) {
        const std::size_t advance = std::max(2 * needed, largest_advance_samples);
        grown.memory.grow(std::max(needed, std::min(grown.samples + samples_to_come, advance)));
    }
}

std::size_t silence_segments::silent_at_head(std::size_t limit) noexcept {
    const std::size_t looked_at = std::min(limit, segments_.size());
    while (found_silent_ < looked_at && segments_[found_silent_].measure.is_silent(threshold_db_)) {
        ++found_silent_;
    }
    return std::min(found_silent_, looked_at);
}

bool silence_segments::are_all_silent() const noexcept {
    std::size_t silent = found_silent_;
    while (silent < segments_.size() && segments_[silent].measure.is_silent(threshold_db_)) {
        ++silent;
    }
    return silent == segments_.size();
}

void silence_segments::pop() noexcept {
    pieces_.pop(segments_[0].pieces);
    segments_.pop();
    found_silent_ -= std::min<std::size_t>(found_silent_, 1);
}

void silence_segments::clear() noexcept {
    pieces_.pop(pieces_.size());
    segments_.pop(segments_.size());
    found_silent_ = 0;
}

double silence_segments::duration_s() const noexcept {
    double sum_s = 0.0;
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        sum_s += segments_[i].measure.duration_s();
    }
    return sum_s;
}

} // namespace kelvane
