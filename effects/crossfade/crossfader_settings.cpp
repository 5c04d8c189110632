#include "effects/crossfade/crossfader_settings.h"

#include "frame/exceptions.h"
#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

#include <algorithm>

namespace kelvane {

double crossfader_settings::fade_s() const noexcept {
    return std::clamp(fade_ms, shortest_fade_ms, longest_fade_ms) * 0.001;
}

crossfader_settings crossfader_settings::read(std::span<const std::byte> payload) {
    try {
        payload_reader fields(payload);
        return {read_u32(fields)};
    } catch (const velmora_io::exception_io_data&) {
        return {};
    }
}

std::vector<std::byte> crossfader_settings::write() const {
    return payload_writer().u32(fade_ms).payload();
}

} // namespace kelvane
