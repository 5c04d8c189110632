#include "frame/limited_reader.h"

#include "frame/exceptions.h"

#include <algorithm>

namespace kelvane {

std::size_t limited_reader::read(void* buffer, std::size_t bytes, velmora::abort_signal* abort) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, left_));
    const std::size_t done = stream_.read(buffer, wanted, abort);
    position_ += done;
    left_ -= done;
    return done;
}

void limited_reader::read_exact(void* buffer, std::size_t bytes, velmora::abort_signal* abort) {
    if (bytes > left_ || read(buffer, bytes, abort) != bytes) {
        throw velmora_io::exception_io_data_truncation();
    }
}

std::uint64_t limited_reader::skip(std::uint64_t bytes, velmora::abort_signal* abort) {
    const std::uint64_t done = stream_.skip(std::min(bytes, left_), abort);
    position_ += done;
    left_ -= done;
    return done;
}

std::uint64_t limited_reader::skip_exact(std::uint64_t bytes, velmora::abort_signal* abort) {
    if (bytes > left_ || skip(bytes, abort) != bytes) {
        throw velmora_io::exception_io_data_truncation();
    }
    return position_;
}

} // namespace kelvane
