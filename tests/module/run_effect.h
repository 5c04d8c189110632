// Whole playbacks through an effect, or through whatever takes a list.
#pragma once

#include "tests/support/signals.h"
#include "tests/support/strict_block.h"
#include "velmora/effect_instance.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace testing_support {

/// A stretch of audio in one format.
struct stretch {
    block_format format;
    std::vector<double> samples;

    std::size_t frames() const { return format.channels == 0 ? 0 : samples.size() / format.channels; }
};

using programme = std::vector<stretch>;

/// Frames of all stretches.
std::size_t frames_of(const programme& played);

/// Puts `more` behind `all`; stretches of one format become one.
void join(programme& all, const programme& more);

/// Puts each stretch into the list as one block.
void append(strict_list& list, const programme& blocks);

/// What the list's blocks hold, as stretches of one format each.
programme content_of(strict_list& list);

/// One stretch of noise in each format.
programme noise_in(const std::vector<block_format>& formats, std::size_t frames, double amplitude,
                   random_source& random);

/// One stretch of mono, its peak below full scale.
programme mono_noise(std::uint32_t rate_hz, std::size_t frames, random_source& random);

/// How a programme is cut into blocks and calls.
struct cutting {
    std::size_t longest_block_frames;
    std::size_t most_blocks_a_call;
};

/// Takes a list through what is tested; the flags are of `velmora::run_flag`.
using list_run = std::function<void(strict_list& list, std::uint32_t flags)>;

/// Plays the programme in blocks of random lengths; the last call carries `last_flags`. What comes out is joined into
/// stretches of one format.
programme play(const list_run& run, const programme& played, const cutting& cut, std::uint32_t last_flags,
               random_source& random);

/// The same through one effect.
programme play(velmora::effect_instance& effect, const programme& played, const cutting& cut, std::uint32_t last_flags,
               random_source& random);

/// The same in one call.
programme play_whole(velmora::effect_instance& effect, const programme& played,
                     std::uint32_t flags = velmora::run_flag::end_of_playback);

/// Whether the block has a rate, channels, frames and the samples that it claims.
bool is_valid(strict_block& block);

/// Whether formats and samples are equal, bit for bit.
bool are_equal(const programme& a, const programme& b);

} // namespace testing_support
