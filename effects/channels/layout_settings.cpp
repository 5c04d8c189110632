#include "effects/channels/layout_settings.h"

#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

namespace kelvane {

layout_settings layout_settings::read(std::span<const std::byte> payload) {
    if (payload.size() != sizeof(target_mask)) {
        return {0};
    }
    payload_reader fields(payload);
    return {read_u32(fields)};
}

std::vector<std::byte> layout_settings::write() const {
    return payload_writer().u32(target_mask).payload();
}

} // namespace kelvane
