// What may have come before a stream's first frames and may come after its last ones.
#pragma once

#include <cstddef>
#include <span>

namespace kelvane {

/// The most frames that the two functions look at or make.
inline constexpr std::size_t most_edge_frames = 1024;

/// Fills `before` with frames that lead into `first`, the frames with which a stream begins, and `after` with frames
/// that go on from `last`, those with which it ends. All are interleaved, of `channels` (at least 1) and of at most
/// `most_edge_frames`, predicted channel by channel as 32-bit samples (lpc_extrapolator_core.h). Silence where the
/// stream is too short to predict from.
void fill_before(std::span<const double> first, std::size_t channels, std::span<double> before) noexcept;
void fill_after(std::span<const double> last, std::size_t channels, std::span<double> after) noexcept;

} // namespace kelvane
