// The containers that are written by way of libsndfile.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/audio_writer.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace host {

struct container {
    std::string_view extension;
    std::string_view name;
    int sndfile_format;            ///< the major format, and the coding when there is but one
    std::uint64_t most_data_bytes; ///< that its sizes have room for
};

/// What the target's extension asks for. Throws `audio_error` when it is none that can be written.
const container& container_for(const std::filesystem::path& target);

/// The format of libsndfile for such a file. Throws `audio_error` when the container cannot hold that.
int sndfile_format_of(const std::filesystem::path& target, const container& kind, const audio_format& format,
                      std::optional<sample_encoding> encoding);

} // namespace host
