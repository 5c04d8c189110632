#include "effects/resampler_sinc/frame_counts.h"

#include "frame/exceptions.h"

namespace kelvane {

namespace {

constexpr double samples_limit = 1152921504606846976.0; ///< 2^60, of 8 bytes each

} // namespace

std::size_t to_count(double things, std::size_t samples_each) {
    if (!(things * static_cast<double>(samples_each) < samples_limit)) {
        throw bad_allocation();
    }
    return things > 0.0 ? static_cast<std::size_t>(things) : 0;
}

std::size_t room_samples(double ratio, std::size_t input_frames, std::size_t channels) {
    return to_count(2.0 * ratio * static_cast<double>(input_frames) * static_cast<double>(channels) + 0.5, 1);
}

std::size_t due_frames(const stream_totals& totals, std::size_t channels) {
    const double length = static_cast<double>(totals.in_frames) / totals.input_hz * totals.target_hz;
    return to_count(length - static_cast<double>(totals.out_frames) + 0.5, channels);
}

double latency_s(const stream_totals& totals) noexcept {
    return static_cast<double>(totals.in_frames) / totals.input_hz -
           static_cast<double>(totals.out_frames) / totals.target_hz;
}

} // namespace kelvane
