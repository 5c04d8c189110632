// A file to read bytes from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>

namespace host {

class binary_file {
public:
    /// Throws `audio_error` when there is no such file, it is a folder or another thing without a length, or it cannot
    /// be opened.
    explicit binary_file(std::filesystem::path file);

    const std::filesystem::path& path() const noexcept { return path_; }

    /// When it was opened.
    std::uint64_t size_bytes() const noexcept { return size_bytes_; }

    void seek(std::uint64_t position_bytes);

    /// How many bytes there were: fewer than asked for at the end of the file or when it cannot be read.
    std::size_t read(std::span<std::byte> bytes);

    std::size_t read_at(std::uint64_t position_bytes, std::span<std::byte> bytes);

private:
    std::filesystem::path path_;
    std::uint64_t size_bytes_ = 0;
    std::ifstream stream_;
};

} // namespace host
