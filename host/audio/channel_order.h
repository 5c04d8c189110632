// The order of the channels in a frame: that of a container and that of the mask.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace host {

/// The speakers of a frame's samples, first sample first: one mask bit (velmora/channel_mask.h) each.
using speaker_list = std::vector<std::uint32_t>;

/// The speakers of a mask in its own order, lowest bit first.
speaker_list speakers_of(std::uint32_t mask);

/// The mask of a list. Nothing when an entry is not one bit of those that the mask has names for, or is there twice.
std::optional<std::uint32_t> mask_of(std::span<const std::uint32_t> speakers);

/// For each sample of a reordered frame its place in the original one. Empty: all stay.
using channel_order = std::vector<std::size_t>;

/// The order that brings frames of `speakers` into mask order.
channel_order to_mask_order(std::span<const std::uint32_t> speakers);

/// The order that brings frames in mask order into that of `speakers`.
channel_order from_mask_order(std::span<const std::uint32_t> speakers);

/// Reorders whole frames in place, of at most `most_channels` channels.
void reorder(std::span<double> interleaved, std::span<const std::size_t> order);

} // namespace host
