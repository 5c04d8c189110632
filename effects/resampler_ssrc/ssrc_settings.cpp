#include "effects/resampler_ssrc/ssrc_settings.h"

#include "effects/resampler_common/target_rates.h"
#include "frame/exceptions.h"
#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

namespace kelvane {

namespace {

constexpr std::uint32_t reserved = 0;

std::uint32_t read_target_rate(payload_reader& fields) {
    const std::uint32_t rate_hz = read_u32(fields);
    if (!is_target_rate(rate_hz)) {
        throw velmora_io::exception_io_data();
    }
    return rate_hz;
}

void read_exclusions(payload_reader& fields, ssrc_settings& settings) {
    static_cast<void>(read_u32(fields)); // reserved
    settings.excludes = read_u8(fields) != 0;
    const std::string text = read_text(fields);
    settings.exclusions = text.substr(0, text.find('\0'));
}

} // namespace

ssrc_settings ssrc_settings::read(std::span<const std::byte> payload) {
    payload_reader fields(payload);
    ssrc_settings settings{.target_rate_hz = read_target_rate(fields), .excludes = false, .exclusions = {}};
    try {
        read_exclusions(fields, settings);
    } catch (const velmora_io::exception_io_data&) {
        // What was read before the end stays.
    }
    return settings;
}

std::vector<std::byte> ssrc_settings::write() const {
    return payload_writer().u32(target_rate_hz).u32(reserved).u8(excludes ? 1 : 0).text(exclusions).payload();
}

ssrc_settings ssrc_settings::for_rate(std::uint32_t target_rate_hz, double) {
    return {.target_rate_hz = target_rate_hz, .excludes = false, .exclusions = {}};
}

} // namespace kelvane
