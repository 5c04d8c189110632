// Files that are rows of chunks: a name, a size, and so many bytes.
#pragma once

#include "host/audio/binary_file.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// How a kind of file writes its chunks.
struct chunk_rules {
    std::size_t name_bytes; ///< of which the first four tell the chunk
    std::size_t size_bytes;
    std::endian order;
    bool size_counts_header;
    std::uint64_t alignment_bytes;
};

inline constexpr chunk_rules riff_chunks{4, 4, std::endian::little, false, 2};
inline constexpr chunk_rules aiff_chunks{4, 4, std::endian::big, false, 2};
inline constexpr chunk_rules wave64_chunks{16, 8, std::endian::little, true, 8};
inline constexpr chunk_rules caf_chunks{4, 8, std::endian::big, false, 1};

/// Where a chunk's data begin in the file, and how many bytes they are by its own account.
struct chunk {
    std::uint64_t begin_bytes;
    std::uint64_t size_bytes;
};

/// The first chunk of that name in the row that starts at `first_bytes`, whole or not.
std::optional<chunk> find_chunk(binary_file& file, const chunk_rules& rules, std::uint64_t first_bytes,
                                std::string_view name);

/// Throws `audio_error` when the file is shorter than the chunk says.
void check_is_whole(const binary_file& file, const chunk& audio);

} // namespace host
