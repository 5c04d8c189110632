#include "host/audio/riff_format_chunk.h"

#include "host/audio/byte_order.h"
#include "host/audio/byte_writer.h"
#include "host/audio/channel_order.h"
#include "host/audio/default_mask.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr std::uint16_t tag_pcm = 1;
constexpr std::uint16_t tag_float = 3;
constexpr std::uint16_t tag_extensible = 0xFFFE;

constexpr std::size_t short_bytes = 16;
constexpr std::size_t extensible_bytes = 40;
constexpr std::size_t extension_bytes = 22;

/// What follows the tag in the GUID of an extensible format.
constexpr std::array<std::uint8_t, 14> guid_tail{0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

constexpr bool has_guid_tail(std::span<const std::byte> bytes) {
    return std::equal(bytes.begin(), bytes.end(), guid_tail.begin(), guid_tail.end(),
                      [](std::byte a, std::uint8_t b) { return std::to_integer<std::uint8_t>(a) == b; });
}

/// The tag that tells the coding; 0 when it is not told.
std::uint16_t coding_tag(std::span<const std::byte> content) {
    const auto tag = load<std::uint16_t>(content.first(2));
    if (tag != tag_extensible) {
        return tag;
    }
    const bool is_known = content.size() >= extensible_bytes && has_guid_tail(content.subspan(26, guid_tail.size()));
    return is_known ? load<std::uint16_t>(content.subspan(24, 2)) : std::uint16_t{0};
}

std::optional<sample_layout> layout_of(std::uint16_t tag, std::size_t frame_bytes, std::size_t channels,
                                       std::size_t bits) {
    const sample_layout layout{tag == tag_float, (bits + 7) / 8};
    const bool is_plain = (tag == tag_pcm || tag == tag_float) && frame_bytes == channels * layout.bytes;
    return is_plain && is_known(layout) ? std::optional(layout) : std::nullopt;
}

bool has_short_form(const audio_format& format, const sample_layout& samples) {
    return samples == sample_layout{false, 2} && format.channels <= 2 &&
           format.channel_mask == default_mask(format.channels);
}

} // namespace

std::optional<riff_format> parse_riff_format(std::span<const std::byte> content) {
    if (content.size() < short_bytes) {
        return std::nullopt;
    }
    const bool has_mask = load<std::uint16_t>(content.first(2)) == tag_extensible && content.size() >= 24;
    riff_format format{};
    format.channels = load<std::uint16_t>(content.subspan(2, 2));
    format.sample_rate_hz = load<std::uint32_t>(content.subspan(4, 4));
    format.channel_mask = has_mask ? load<std::uint32_t>(content.subspan(20, 4)) : 0;
    format.frame_bytes = load<std::uint16_t>(content.subspan(12, 2));
    const std::size_t bits = load<std::uint16_t>(content.subspan(14, 2));
    format.samples = layout_of(coding_tag(content), format.frame_bytes, format.channels, bits);
    return format;
}

std::vector<std::byte> make_riff_format(const audio_format& format, const sample_layout& samples) {
    const bool is_short = has_short_form(format, samples);
    const std::uint16_t tag = samples.is_float ? tag_float : tag_pcm;
    const auto frame_bytes = static_cast<std::uint16_t>(format.channels * samples.bytes);
    const auto bits = static_cast<std::uint16_t>(8 * samples.bytes);
    byte_writer content;
    content.number(is_short ? tag : tag_extensible);
    content.number(static_cast<std::uint16_t>(format.channels));
    content.number(format.sample_rate_hz);
    content.number(format.sample_rate_hz * frame_bytes);
    content.number(frame_bytes);
    content.number(bits);
    if (!is_short) {
        content.number(static_cast<std::uint16_t>(extension_bytes));
        content.number(bits);
        content.number(mask_of(speakers_of(format.channel_mask)).value_or(0));
        content.number(tag);
        content.bytes(std::as_bytes(std::span(guid_tail)));
    }
    return content.take();
}

} // namespace host
