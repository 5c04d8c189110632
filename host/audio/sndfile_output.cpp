#include "host/audio/sndfile_output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace host {

namespace {

sndfile_output& self(void* user_data) {
    return *static_cast<sndfile_output*>(user_data);
}

} // namespace

sndfile_output::sndfile_output(const std::filesystem::path& file) {
    errno = 0;
    stream_.open(file, std::ios::binary);
    note_failure();
}

SNDFILE* sndfile_output::open(SF_INFO& info) {
    SF_VIRTUAL_IO callbacks = functions();
    return sf_open_virtual(&callbacks, SFM_WRITE, &info, this);
}

void sndfile_output::close() {
    errno = 0;
    stream_.close();
    note_failure();
}

SF_VIRTUAL_IO sndfile_output::functions() {
    SF_VIRTUAL_IO callbacks{};
    callbacks.get_filelen = [](void* user_data) { return self(user_data).length_bytes_; };
    callbacks.seek = [](sf_count_t offset, int whence, void* user_data) {
        return self(user_data).seek(offset, whence);
    };
    callbacks.read = [](void*, sf_count_t, void*) -> sf_count_t { return 0; };
    callbacks.write = [](const void* data, sf_count_t bytes, void* user_data) {
        return self(user_data).write(data, bytes);
    };
    callbacks.tell = [](void* user_data) { return self(user_data).position_bytes_; };
    return callbacks;
}

sf_count_t sndfile_output::seek(sf_count_t offset, int whence) {
    const sf_count_t base = whence == SEEK_CUR ? position_bytes_ : whence == SEEK_END ? length_bytes_ : 0;
    if (base + offset != position_bytes_) {
        position_bytes_ = base + offset;
        errno = 0;
        stream_.seekp(position_bytes_);
        note_failure();
    }
    return position_bytes_;
}

sf_count_t sndfile_output::write(const void* data, sf_count_t bytes) {
    errno = 0;
    stream_.write(static_cast<const char*>(data), bytes);
    note_failure();
    if (system_error_ != 0) {
        return 0;
    }
    position_bytes_ += bytes;
    length_bytes_ = std::max(length_bytes_, position_bytes_);
    return bytes;
}

void sndfile_output::note_failure() noexcept {
    if (!stream_ && system_error_ == 0) {
        system_error_ = errno != 0 ? errno : EIO;
    }
}

} // namespace host
