// The file that libsndfile writes to.
#pragma once

#include <sndfile.h>

#include <filesystem>
#include <fstream>

namespace host {

/// Keeps in mind whether all bytes were taken: the library itself passes over a full disk in some formats, and in most
/// when it closes a file.
class sndfile_output {
public:
    /// Truncates the file.
    explicit sndfile_output(const std::filesystem::path& file);
    sndfile_output(const sndfile_output&) = delete;
    sndfile_output& operator=(const sndfile_output&) = delete;

    /// Starts a file of libsndfile that borrows this object; null when the library does not want to.
    SNDFILE* open(SF_INFO& info);

    /// What the system says to the first byte that it did not take; 0 while all is well.
    int system_error() const noexcept { return system_error_; }

    /// Writes out what is left. Whether that went well is in `system_error`.
    void close();

private:
    static SF_VIRTUAL_IO functions();
    sf_count_t seek(sf_count_t offset, int whence);
    sf_count_t write(const void* data, sf_count_t bytes);
    void note_failure() noexcept;

    std::ofstream stream_;
    sf_count_t position_bytes_ = 0;
    sf_count_t length_bytes_ = 0;
    int system_error_ = 0;
};

} // namespace host
