#include "effects/resampler_sinc/stream_edges_core.h"

#include "effects/resampler_sinc/lpc_extrapolator_core.h"

#include <algorithm>
#include <array>

namespace kelvane {

namespace {

using one_channel = std::array<float, most_edge_frames>;

/// Calls `fill` for each channel, with its known samples and room for the new ones, and lays the two into and out of
/// the interleaved frames by `known_frame` and `new_frame`, which give the frame of a sample.
template <class KnownFrame, class NewFrame>
void fill_channels(std::span<const double> known, std::size_t channels, std::span<double> filled,
                   KnownFrame known_frame, NewFrame new_frame) noexcept {
    const std::size_t known_frames = known.size() / channels;
    const std::size_t new_frames = filled.size() / channels;
    if (known_frames < min_lpc_history_samples) {
        std::fill(filled.begin(), filled.end(), 0.0);
        return;
    }
    one_channel history;
    one_channel made;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t i = 0; i < known_frames; ++i) {
            history[i] = static_cast<float>(known[known_frame(i) * channels + channel]);
        }
        extrapolate({history.data(), known_frames}, {made.data(), new_frames});
        for (std::size_t i = 0; i < new_frames; ++i) {
            filled[new_frame(i) * channels + channel] = static_cast<double>(made[i]);
        }
    }
}

} // namespace

void fill_before(std::span<const double> first, std::size_t channels, std::span<double> before) noexcept {
    // Backwards in time: the newest known sample is the stream's first one.
    fill_channels(
        first, channels, before, [last = first.size() / channels - 1](std::size_t i) { return last - i; },
        [last = before.size() / channels - 1](std::size_t i) { return last - i; });
}

void fill_after(std::span<const double> last, std::size_t channels, std::span<double> after) noexcept {
    const auto as_it_stands = [](std::size_t i) { return i; };
    fill_channels(last, channels, after, as_it_stands, as_it_stands);
}

} // namespace kelvane
