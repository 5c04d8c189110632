#include "effects/resampler_sinc/sinc_settings.h"

#include "effects/resampler_common/target_rates.h"
#include "frame/exceptions.h"
#include "frame/payload_reader.h"
#include "frame/payload_writer.h"

namespace kelvane {

namespace {

constexpr std::size_t older_form_bytes = 8;
constexpr std::uint32_t older_form_high_quality = 4;
constexpr std::uint32_t not_read = 0xFFFFFFFF;

sinc_settings read_older_form(payload_reader& fields) {
    sinc_settings settings;
    if (read_u32(fields) != 0) {
        settings.quality = older_form_high_quality;
    }
    settings.target_rate_hz = read_u32(fields);
    return settings;
}

void read_fields(payload_reader& fields, sinc_settings& settings) {
    settings.target_rate_hz = read_u32(fields);
    settings.quality = read_u32(fields);
    settings.excludes = read_u8(fields) != 0;
    settings.exclusions = read_text(fields);
}

void repair(sinc_settings& settings) {
    const sinc_settings defaults;
    if (!is_target_rate(settings.target_rate_hz)) {
        settings.target_rate_hz = defaults.target_rate_hz;
    }
    if (settings.quality == not_read) {
        settings.quality = defaults.quality;
    }
    settings.excludes = false;
    settings.exclusions.clear();
}

} // namespace

sinc_settings sinc_settings::read(std::span<const std::byte> payload) {
    payload_reader fields(payload);
    if (payload.size() == older_form_bytes) {
        return read_older_form(fields);
    }
    sinc_settings settings{.target_rate_hz = 0, .quality = not_read, .excludes = false, .exclusions = {}};
    try {
        read_fields(fields, settings);
    } catch (const velmora_io::exception_io_data&) {
        repair(settings);
    }
    return settings;
}

std::vector<std::byte> sinc_settings::write() const {
    return payload_writer().u32(target_rate_hz).u32(quality).u8(excludes ? 1 : 0).text(exclusions).payload();
}

sinc_settings sinc_settings::for_rate(std::uint32_t target_rate_hz, double quality_fraction) {
    std::uint32_t quality = 0;
    for (const double step : {0.2, 0.4, 0.6, 0.8}) {
        quality += quality_fraction >= step ? 1U : 0U;
    }
    return {.target_rate_hz = target_rate_hz, .quality = quality, .excludes = false, .exclusions = {}};
}

} // namespace kelvane
