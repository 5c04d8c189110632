#include "frame/settings_store.h"

#include "frame/exceptions.h"
#include "frame/limited_reader.h"
#include "frame/little_endian.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace kelvane {

namespace {

/// Collects a value's bytes, so that their count can be written first.
class byte_collector final : public velmora::settings_writer {
public:
    void write(const void* data, std::size_t bytes, velmora::abort_signal*) override {
        const auto* const first = static_cast<const std::byte*>(data);
        collected.insert(collected.end(), first, first + bytes);
    }

    std::vector<std::byte> collected;
};

/// Reads a whole field with the stream's plain `read`; false when it comes short.
bool read_whole(velmora::settings_reader& stream, std::span<std::byte> field, velmora::abort_signal* abort) {
    return stream.read(field.data(), field.size(), abort) == field.size();
}

} // namespace

std::uint32_t record_size(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::uint32_t>::max()) {
        throw mox::exception_overflow();
    }
    return static_cast<std::uint32_t>(bytes);
}

void settings_store::save(velmora::settings_writer& stream, velmora::abort_signal* abort) const {
    for (config_variable* const variable : saved_) {
        const velmora::guid identity = variable->identity();
        stream.write(&identity, sizeof identity, abort);
        byte_collector value;
        variable->write(value, abort);
        const auto size = store_u32(record_size(value.collected.size()));
        stream.write(size.data(), size.size(), abort);
        if (!value.collected.empty()) {
            stream.write(value.collected.data(), value.collected.size(), abort);
        }
    }
}

void settings_store::load(velmora::settings_reader& stream, velmora::abort_signal* abort) const {
    velmora::guid identity;
    while (read_whole(stream, std::as_writable_bytes(std::span(&identity, 1)), abort)) {
        std::array<std::byte, 4> size;
        if (!read_whole(stream, size, abort)) {
            throw velmora_io::exception_io_data_truncation();
        }
        limited_reader payload(stream, load_u32(size));
        if (config_variable* const variable = find_loaded(identity)) {
            variable->read(payload, abort);
        }
        const std::uint64_t unread = payload.left();
        if (payload.skip(unread, abort) != unread) {
            throw velmora_io::exception_io_data_truncation();
        }
    }
}

config_variable* settings_store::find_loaded(const velmora::guid& identity) const {
    const auto found = std::find_if(loaded_.begin(), loaded_.end(),
                                    [&](const config_variable* variable) { return variable->identity() == identity; });
    return found == loaded_.end() ? nullptr : *found;
}

} // namespace kelvane
