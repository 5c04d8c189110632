// The host's blocks without a class of the boundary: structs whose first word points to a table made by hand.
#pragma once

#include "tests/abi/raw_object.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace abi_test {

/// The calls that an object has had: the function's name and its numbers.
using call_log = std::vector<std::string>;

/// A sample_block.
struct hand_made_block {
    /// One channel, marked as front centre.
    hand_made_block(std::uint32_t hz, const std::vector<double>& mono);

    /// A new one, with room only.
    explicit hand_made_block(std::size_t capacity_samples);

    const any_function* table;
    std::uint32_t rate_hz;
    std::uint32_t channels = 1;
    std::uint32_t channel_mask = 0x4;
    std::size_t frames;
    std::vector<double> samples;
    call_log log;
};

/// A block_list of blocks that others own, those aside that are inserted.
struct hand_made_list {
    explicit hand_made_list(std::vector<hand_made_block*> listed);

    const any_function* table;
    std::vector<hand_made_block*> blocks;
    std::deque<hand_made_block> inserted; ///< in the order of the calls
    std::size_t room_samples = 0;         ///< of those that are inserted
    call_log log;
};

/// An abort_signal that never fires.
struct hand_made_signal {
    hand_made_signal();

    const any_function* table;
};

} // namespace abi_test
