#include "effects/crossfeed/crossfeed_settings.h"

#include "frame/exceptions.h"
#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

namespace kelvane {

crossfeed_settings crossfeed_settings::read(std::span<const std::byte> payload) {
    try {
        payload_reader fields(payload);
        return {read_i32(fields)};
    } catch (const velmora_io::exception_io_data&) {
        return {};
    }
}

std::vector<std::byte> crossfeed_settings::write() const {
    return payload_writer().i32(strength).payload();
}

} // namespace kelvane
