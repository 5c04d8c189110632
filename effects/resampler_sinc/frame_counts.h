// Numbers of frames that come out of floating-point arithmetic.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvane {

/// The integer part of a number of things in memory, each of `samples_each` samples (at least 1); 0 for a negative
/// number. Throws `bad_allocation` where their bytes have no 63-bit count, and for what is not a number.
std::size_t to_count(double things, std::size_t samples_each);

/// The room, in samples, for what a converter makes of up to `input_frames` frames at once: the integer part of
/// 2 × ratio × frames × channels + 0.5, with the ratio output rate ÷ input rate. From 4096 frames on it is enough for
/// every converter: none has a ratio below 1/1024, nor writes more than 1.5 × ratio × (frames + 1) frames, rounded up.
/// Throws as `to_count` does.
std::size_t room_samples(double ratio, std::size_t input_frames, std::size_t channels);

/// What has gone into a stream and what has come out.
struct stream_totals {
    std::uint32_t input_hz;
    std::uint32_t target_hz;
    std::uint64_t in_frames = 0;
    std::uint64_t out_frames = 0;
};

/// How many frames are still to come out: the integer part of in ÷ input rate × target rate - out + 0.5, computed in
/// doubles from left to right. Where the exact length ends in a half, it therefore falls as the doubles fall. Throws as
/// `to_count` does.
std::size_t due_frames(const stream_totals& totals, std::size_t channels);

/// What has gone in and not come out, in seconds.
double latency_s(const stream_totals& totals) noexcept;

} // namespace kelvane
