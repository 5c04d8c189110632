#include "host/audio/mpeg_declaration.h"

#include "host/audio/mpeg_outline.h"

#include <algorithm>
#include <limits>
#include <span>
#include <string_view>

namespace host {

namespace {

using frame_header = std::array<std::byte, mpeg_header_bytes>;

/// Of the same format, at the highest bit rate, that the frame has room for a declaration; without a checksum.
frame_header roomy(frame_header header) {
    header[1] |= std::byte{0x01};
    header[2] = (header[2] & std::byte{0x0D}) | std::byte{0xE0};
    return header;
}

std::vector<std::byte> declaring_frame(const frame_header& header, std::uint32_t frames) {
    const auto made = parse_mpeg_header(header);
    std::vector<std::byte> bytes(made->size_bytes);
    std::copy(header.begin(), header.end(), bytes.begin());
    const auto content = std::span(bytes).subspan(made->content_bytes);
    constexpr std::array has_frames_alone{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{1}};
    std::ranges::copy(std::as_bytes(std::span(std::string_view("Xing"))), content.begin());
    std::ranges::copy(has_frames_alone, content.subspan(4).begin());
    for (std::size_t i = 0; i < sizeof frames; ++i) {
        content[8 + i] = static_cast<std::byte>(frames >> (24 - 8 * i));
    }
    return bytes;
}

} // namespace

std::optional<mpeg_declaration> missing_declaration(binary_file& file) {
    const auto outline = outline_mpeg(file);
    constexpr std::uint64_t most_frames = std::numeric_limits<std::int32_t>::max();
    if (!outline || outline->frames <= outline->declared_frames.value_or(0) || outline->frames > most_frames) {
        return std::nullopt;
    }
    const auto frames = static_cast<std::uint32_t>(outline->frames);
    return mpeg_declaration{declaring_frame(roomy(outline->first_header), frames), outline->audio_begin_bytes};
}

} // namespace host
