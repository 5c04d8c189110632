#include "host/audio/sndfile_stream.h"

#include <algorithm>
#include <cstdio>
#include <span>

namespace host {

namespace {

sndfile_stream& stream_of(void* user) {
    return *static_cast<sndfile_stream*>(user);
}

} // namespace

sndfile_stream::sndfile_stream(const std::filesystem::path& file, std::vector<std::byte> front,
                               std::uint64_t begin_bytes)
    : file_(file), front_(std::move(front)), begin_bytes_(begin_bytes) {}

SNDFILE* sndfile_stream::open(SF_INFO& info) {
    SF_VIRTUAL_IO calls{};
    calls.get_filelen = [](void* user) { return stream_of(user).size_bytes(); };
    calls.seek = [](sf_count_t offset, int whence, void* user) { return stream_of(user).seek(offset, whence); };
    calls.read = [](void* target, sf_count_t bytes, void* user) {
        return stream_of(user).read(static_cast<std::byte*>(target), bytes);
    };
    calls.tell = [](void* user) { return stream_of(user).position_bytes_; };
    return sf_open_virtual(&calls, SFM_READ, &info, this);
}

sf_count_t sndfile_stream::size_bytes() const {
    return static_cast<sf_count_t>(front_.size() + file_.size_bytes() - begin_bytes_);
}

sf_count_t sndfile_stream::seek(sf_count_t offset_bytes, int whence) {
    const sf_count_t from_bytes = whence == SEEK_CUR ? position_bytes_ : whence == SEEK_END ? size_bytes() : 0;
    position_bytes_ = std::max<sf_count_t>(from_bytes + offset_bytes, 0);
    return position_bytes_;
}

sf_count_t sndfile_stream::read(std::byte* target, sf_count_t bytes) {
    std::span<std::byte> room(target, static_cast<std::size_t>(bytes));
    const auto position = static_cast<std::size_t>(position_bytes_);
    const std::size_t from_front = std::min(front_.size() - std::min(position, front_.size()), room.size());
    std::copy_n(front_.begin() + static_cast<std::ptrdiff_t>(from_front > 0 ? position : 0), from_front, room.begin());
    room = room.subspan(from_front);
    const std::uint64_t behind_front = position + from_front - front_.size();
    const std::size_t from_file = room.empty() ? 0 : file_.read_at(begin_bytes_ + behind_front, room);
    const auto done = static_cast<sf_count_t>(from_front + from_file);
    position_bytes_ += done;
    return done;
}

} // namespace host
