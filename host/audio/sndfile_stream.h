// A file for libsndfile to read with other bytes in front.
#pragma once

#include "host/audio/binary_file.h"

#include <sndfile.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace host {

/// Must outlive what is opened from it, and stay where it is.
class sndfile_stream {
public:
    /// Reads as `front` and behind it the file from `begin_bytes` on. Throws `audio_error` as `binary_file` does.
    sndfile_stream(const std::filesystem::path& file, std::vector<std::byte> front, std::uint64_t begin_bytes);

    /// As sf_open: null when the library does not take it.
    SNDFILE* open(SF_INFO& info);

private:
    sf_count_t size_bytes() const;
    sf_count_t seek(sf_count_t offset_bytes, int whence);
    sf_count_t read(std::byte* target, sf_count_t bytes);

    binary_file file_;
    std::vector<std::byte> front_;
    std::uint64_t begin_bytes_;
    sf_count_t position_bytes_ = 0;
};

} // namespace host
