// The ordered blocks of one call.
#pragma once

#include <stddef.h>

namespace velmora {

class sample_block;

/// Owns its blocks and belongs to the host. A pointer to a block stays valid until that block is removed.
class block_list {
public:
    /// Number of blocks. [playback-thread]
    virtual size_t get_count() = 0;

    /// The block at `index` (below the count). [playback-thread]
    virtual sample_block* get_item(size_t index) = 0;

    /// Takes the block at `index` out and disposes of it; those behind it move down by one. [playback-thread]
    virtual void remove_item(size_t index) = 0;

    /// Disposes of every block. An effect never calls it. [playback-thread]
    virtual void remove_all() = 0;

    /// Puts a new empty block at `index` (at most the count) and returns it; the blocks from there on move up by one.
    /// `samples_hint` is the number of samples that the caller will write. May throw a bad allocation and then leaves
    /// the list as it was. [playback-thread]
    virtual sample_block* insert_item(size_t index, size_t samples_hint) = 0;

protected:
    ~block_list() = default;
};

} // namespace velmora
