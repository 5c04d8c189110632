#include "effects/limiters/advanced_limiter_core.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr double ceiling = 1.0;

// Per frame. They are numbers of single precision: their last bits are part of the sound.
constexpr double release_keep = static_cast<double>(0.999F);
constexpr double release_rise = static_cast<double>(0.001F);
constexpr double aim_keep = static_cast<double>(0.9F);
constexpr double aim_take = static_cast<double>(0.1F);

struct two_lanes {
    static double_pair load(const double* from) noexcept { return load_two(from); }
    static void store(double* to, double_pair value) noexcept { store_two(to, value); }
};

struct one_lane {
    static double_pair load(const double* from) noexcept { return load_one(from); }
    static void store(double* to, double_pair value) noexcept { store_first(to, value); }
};

double_pair next_aim(double_pair aim, double_pair take) noexcept {
    return both(aim_keep) * aim + take;
}

/// Neither gain nor aim is ever not a number, whatever the samples are.
double_pair next_gain(double_pair gain, double_pair aim) noexcept {
    return smaller(aim, both(release_keep) * gain + both(release_rise));
}

/// A product that rounding has left above the ceiling: the reciprocal of a huge sample has few digits.
double_pair clamp(double_pair sample) noexcept {
    return larger(both(-ceiling), smaller(both(ceiling), sample));
}

} // namespace

void limiter_channel_pair::process_two(double* first, std::size_t frames, std::size_t channels) noexcept {
    process<two_lanes>(first, frames, channels);
}

void limiter_channel_pair::process_one(double* first, std::size_t frames, std::size_t channels) noexcept {
    process<one_lane>(first, frames, channels);
}

template <class Lanes>
void limiter_channel_pair::process(double* first, std::size_t frames, std::size_t channels) noexcept {
    while (frames > 0) {
        const std::size_t run = std::min(frames, round_frames - place_);
        if (place_ == 0) {
            delay_[round_frames] = Lanes::load(first);
        }
        const std::size_t quiet = is_at_rest() ? scale_while_quiet<Lanes>(first, run, channels) : 0;
        limit<Lanes>(first + quiet * channels, run - quiet, channels);
        if (place_ == round_frames) {
            end_round();
        }
        first += run * channels;
        frames -= run;
    }
}

/// Whether nothing in the delay is above the ceiling, and quiet frames do not change the gain any more.
bool limiter_channel_pair::is_at_rest() const noexcept {
    const double_pair aim = next_aim(aim_, both(aim_take));
    return !any_greater(larger(round_peak_, peaks_to_end_[place_ + 1]), both(ceiling)) && all_equal(aim, aim_) &&
           all_equal(next_gain(gain_, aim), gain_);
}

/// The same as `limit` for a limiter at rest, up to the first frame above the ceiling. Answers the frames done.
template <class Lanes>
std::size_t limiter_channel_pair::scale_while_quiet(double* first, std::size_t frames, std::size_t channels) noexcept {
    constexpr std::size_t batch = 8;
    std::size_t done = 0;
    while (frames - done >= batch && scale_if_quiet<Lanes, batch>(first + done * channels, channels)) {
        done += batch;
    }
    while (done < frames && scale_if_quiet<Lanes, 1>(first + done * channels, channels)) {
        ++done;
    }
    return done;
}

/// Loads all before it stores anything: stores and loads that take turns at addresses a multiple of 4096 bytes apart
/// wait for each other, and one round of stereo is 4096 bytes long.
template <class Lanes, std::size_t Frames>
bool limiter_channel_pair::scale_if_quiet(double* first, std::size_t channels) noexcept {
    std::array<double_pair, Frames> newest;
    std::array<double_pair, Frames> oldest;
    double_pair peak{};
    for (std::size_t i = 0; i < Frames; ++i) {
        newest[i] = Lanes::load(first + i * channels);
        oldest[i] = delay_[place_ + i + 1];
        peak = larger(magnitude(newest[i]), peak);
    }
    if (any_greater(peak, both(ceiling))) {
        return false;
    }
    for (std::size_t i = 0; i < Frames; ++i) {
        Lanes::store(first + i * channels, gain_ * oldest[i]);
        delay_[place_ + i] = newest[i];
    }
    place_ += Frames;
    return true;
}

template <class Lanes>
void limiter_channel_pair::limit(double* first, std::size_t frames, std::size_t channels) noexcept {
    const double_pair top = both(ceiling);
    double_pair round_peak = round_peak_;
    double_pair gain = gain_;
    double_pair aim = aim_;
    for (const std::size_t end = place_ + frames; place_ < end; ++place_) {
        const double_pair newest = Lanes::load(first);
        delay_[place_] = newest;
        round_peak = larger(magnitude(newest), round_peak);
        const double_pair peak = larger(larger(round_peak, peaks_to_end_[place_ + 1]), top);
        aim = next_aim(aim, both(aim_take) / peak);
        gain = next_gain(gain, aim);
        const double_pair oldest = delay_[place_ + 1];
        const double_pair level = gain * magnitude(oldest);
        if (any_greater(level, top)) {
            gain = choose_where_greater(level, top, top / magnitude(oldest), gain);
            Lanes::store(first, clamp(gain * oldest));
        } else {
            Lanes::store(first, gain * oldest);
        }
        first += channels;
    }
    round_peak_ = round_peak;
    gain_ = gain;
    aim_ = aim;
}

/// Peaks up to the ceiling all count alike: after a round without a higher one there is nothing to look up.
void limiter_channel_pair::end_round() noexcept {
    const bool is_loud = any_greater(round_peak_, both(ceiling));
    if (is_loud) {
        double_pair peak{};
        for (std::size_t place = round_frames; place-- > 0;) {
            peak = larger(magnitude(delay_[place]), peak);
            peaks_to_end_[place] = peak;
        }
    } else if (was_loud_) {
        peaks_to_end_.fill(double_pair{});
    }
    was_loud_ = is_loud;
    round_peak_ = double_pair{};
    place_ = 0;
}

void limit_frames(std::span<limiter_channel_pair> pairs, std::span<double> interleaved, std::size_t channels) noexcept {
    const std::size_t frames = channels == 0 ? 0 : interleaved.size() / channels;
    for (std::size_t channel = 0; channel < channels; channel += 2) {
        limiter_channel_pair& pair = pairs[channel / 2];
        double* const first = interleaved.data() + channel;
        if (channel + 1 < channels) {
            pair.process_two(first, frames, channels);
        } else {
            pair.process_one(first, frames, channels);
        }
    }
}

} // namespace kelvane
