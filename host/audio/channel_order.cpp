#include "host/audio/channel_order.h"

#include "host/audio/audio_format.h"
#include "velmora/channel_mask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>

namespace host {

namespace {

constexpr std::uint32_t named_speakers = 2 * velmora::speaker::top_back_right - 1;

channel_order empty_if_identity(channel_order order) {
    if (std::is_sorted(order.begin(), order.end())) {
        order.clear();
    }
    return order;
}

/// The channels of `speakers` by rising speaker bit.
channel_order sorted_channels(std::span<const std::uint32_t> speakers) {
    channel_order order(speakers.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return speakers[a] < speakers[b]; });
    return order;
}

} // namespace

speaker_list speakers_of(std::uint32_t mask) {
    speaker_list speakers;
    for (std::uint32_t left = mask; left != 0; left &= left - 1) {
        speakers.push_back(left & ~(left - 1));
    }
    return speakers;
}

std::optional<std::uint32_t> mask_of(std::span<const std::uint32_t> speakers) {
    std::uint32_t mask = 0;
    for (const std::uint32_t speaker : speakers) {
        if (!std::has_single_bit(speaker) || (speaker & named_speakers) == 0 || (speaker & mask) != 0) {
            return std::nullopt;
        }
        mask |= speaker;
    }
    return mask;
}

channel_order to_mask_order(std::span<const std::uint32_t> speakers) {
    return empty_if_identity(sorted_channels(speakers));
}

channel_order from_mask_order(std::span<const std::uint32_t> speakers) {
    const channel_order sorted = sorted_channels(speakers);
    channel_order order(sorted.size());
    for (std::size_t channel = 0; channel < sorted.size(); ++channel) {
        order[sorted[channel]] = channel;
    }
    return empty_if_identity(std::move(order));
}

void reorder(std::span<double> interleaved, std::span<const std::size_t> order) {
    if (order.empty()) {
        return;
    }
    std::array<double, most_channels> original;
    for (std::size_t first = 0; first < interleaved.size(); first += order.size()) {
        const std::span<double> frame = interleaved.subspan(first, order.size());
        std::copy(frame.begin(), frame.end(), original.begin());
        for (std::size_t channel = 0; channel < order.size(); ++channel) {
            frame[channel] = original[order[channel]];
        }
    }
}

} // namespace host
