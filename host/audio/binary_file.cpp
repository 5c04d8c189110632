#include "host/audio/binary_file.h"

#include "host/audio/audio_error.h"

#include <cerrno>
#include <system_error>

namespace host {

namespace {

void check_is_plain_file(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw audio_error(file, "there is no such file");
    }
    if (std::filesystem::is_directory(status)) {
        throw audio_error(file, "is a folder");
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw audio_error(file, "is not a plain file");
    }
}

} // namespace

binary_file::binary_file(std::filesystem::path file) : path_(std::move(file)) {
    check_is_plain_file(path_);
    errno = 0;
    stream_.open(path_, std::ios::binary);
    if (!stream_) {
        throw audio_error(path_, "cannot be opened: " + std::generic_category().message(errno));
    }
    std::error_code error;
    size_bytes_ = std::filesystem::file_size(path_, error);
    if (error) {
        throw audio_error(path_, "cannot be read: " + error.message());
    }
}

void binary_file::seek(std::uint64_t position_bytes) {
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(position_bytes));
}

std::size_t binary_file::read(std::span<std::byte> bytes) {
    // A byte may be looked at through any character type.
    stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<std::size_t>(stream_.gcount());
}

std::size_t binary_file::read_at(std::uint64_t position_bytes, std::span<std::byte> bytes) {
    seek(position_bytes);
    return read(bytes);
}

} // namespace host
