#include "effects/silence/silence_settings.h"

#include "frame/exceptions.h"
#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

namespace kelvane {

namespace {

/// The third field, or the default where it is cut short.
bool read_flag(payload_reader& fields) {
    try {
        return (read_u32(fields) & 1U) != 0;
    } catch (const velmora_io::exception_io_data&) {
        return skip_silence_settings{}.keeps_initial;
    }
}

} // namespace

skip_silence_settings skip_silence_settings::read(std::span<const std::byte> payload) {
    try {
        payload_reader fields(payload);
        return {read_u32(fields), read_i32(fields), read_flag(fields)}; // braces keep the order
    } catch (const velmora_io::exception_io_data&) {
        return {};
    }
}

std::vector<std::byte> skip_silence_settings::write() const {
    return payload_writer().u32(minimum_ms).i32(threshold_db).u32(keeps_initial ? 1 : 0).payload();
}

} // namespace kelvane
