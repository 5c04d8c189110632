#include "host/audio/mpeg_outline.h"

#include "host/audio/byte_order.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace host {

namespace {

constexpr std::size_t searched_block_bytes = 65536;
constexpr std::uint32_t has_frames = 1;
constexpr std::uint32_t has_bytes = 2;

bool begins_with(std::span<const std::byte> bytes, std::string_view letters) {
    return std::equal(letters.begin(), letters.end(), bytes.begin(),
                      [](char letter, std::byte byte) { return static_cast<std::byte>(letter) == byte; });
}

/// 0 where no tag begins. The sizes of those of ID3v2 have seven bits a byte; one of ID3v1 is always as long.
std::uint64_t tag_bytes(std::span<const std::byte, 10> start) {
    if (begins_with(start, "TAG")) {
        return 128;
    }
    std::uint64_t content_bytes = 0;
    for (const std::byte digit : start.last<4>()) {
        content_bytes = content_bytes << 7 | std::to_integer<std::uint64_t>(digit & std::byte{0x7F});
    }
    return begins_with(start, "ID3") ? start.size() + content_bytes : 0;
}

/// Behind the tags that begin there.
std::uint64_t skip_tags(binary_file& file, std::uint64_t position_bytes) {
    std::array<std::byte, 10> start;
    while (file.read_at(position_bytes, start) == start.size() && tag_bytes(start) > 0) {
        position_bytes += tag_bytes(start);
    }
    return position_bytes;
}

std::optional<mpeg_frame> frame_at(binary_file& file, std::uint64_t position_bytes) {
    std::array<std::byte, mpeg_header_bytes> header;
    return file.read_at(position_bytes, header) == header.size() ? parse_mpeg_header(header) : std::nullopt;
}

bool have_same_format(const mpeg_frame& a, const mpeg_frame& b) {
    return a.sample_rate_hz == b.sample_rate_hz && a.channels == b.channels;
}

/// Fills in what the first frame declares, if it does, and moves behind it.
void read_declaration(binary_file& file, mpeg_outline& outline) {
    std::array<std::byte, 16> content{};
    file.read_at(outline.audio_begin_bytes + outline.first.content_bytes, content);
    if (!begins_with(content, "Xing") && !begins_with(content, "Info")) {
        return;
    }
    std::span<const std::byte> rest = std::span(content).subspan(4);
    const auto take_number = [&rest] {
        const auto number = load<std::uint32_t>(rest.first(4), std::endian::big);
        rest = rest.subspan(4);
        return number;
    };
    const std::uint32_t flags = take_number();
    if ((flags & has_frames) != 0) {
        outline.declared_frames = take_number();
    }
    if ((flags & has_bytes) != 0) {
        outline.declared_bytes = take_number();
    }
    outline.audio_begin_bytes += outline.first.size_bytes;
}

/// Whether stray bytes end there: they may look like a frame's start by chance, but hardly twice a frame apart.
bool is_frame_among_strays(binary_file& file, std::uint64_t position_bytes, std::span<const std::byte> header,
                           const mpeg_frame& first) {
    const auto frame = parse_mpeg_header(header);
    if (!frame || !have_same_format(*frame, first)) {
        return false;
    }
    position_bytes += frame->size_bytes;
    const auto next = frame_at(file, position_bytes);
    return next ? have_same_format(*next, first) : position_bytes == file.size_bytes();
}

std::optional<std::uint64_t> find_frame(binary_file& file, std::uint64_t position_bytes, const mpeg_frame& first) {
    std::vector<std::byte> block(searched_block_bytes);
    while (const std::size_t there_bytes = file.read_at(position_bytes, block)) {
        for (std::size_t place = 0; place + mpeg_header_bytes <= there_bytes; ++place) {
            const auto header = std::span(block).subspan(place, mpeg_header_bytes);
            if (is_frame_among_strays(file, position_bytes + place, header, first)) {
                return position_bytes + place;
            }
        }
        position_bytes += std::max(there_bytes, mpeg_header_bytes) - (mpeg_header_bytes - 1);
    }
    return std::nullopt;
}

/// Behind tags and stray bytes, if there are any.
std::optional<std::uint64_t> next_frame(binary_file& file, std::uint64_t position_bytes, mpeg_outline& outline) {
    position_bytes = skip_tags(file, position_bytes);
    if (frame_at(file, position_bytes)) {
        return position_bytes;
    }
    outline.is_clear &= position_bytes + mpeg_header_bytes > file.size_bytes();
    return find_frame(file, position_bytes, outline.first);
}

void count_frames(binary_file& file, mpeg_outline& outline) {
    std::uint64_t position_bytes = outline.audio_begin_bytes;
    while (const auto begin_bytes = next_frame(file, position_bytes, outline)) {
        const auto frame = frame_at(file, *begin_bytes);
        position_bytes = *begin_bytes + frame->size_bytes;
        outline.changes_format |= !have_same_format(*frame, outline.first);
        outline.frames += position_bytes <= file.size_bytes() ? 1U : 0U;
    }
}

} // namespace

std::optional<mpeg_outline> outline_mpeg(binary_file& file) {
    mpeg_outline outline{};
    const std::uint64_t begin_bytes = skip_tags(file, 0);
    const auto first = frame_at(file, begin_bytes);
    if (!first) {
        return std::nullopt;
    }
    file.read_at(begin_bytes, outline.first_header);
    outline.first = *first;
    outline.audio_begin_bytes = begin_bytes;
    outline.there_bytes = file.size_bytes() - begin_bytes;
    outline.is_clear = true;
    read_declaration(file, outline);
    if (!outline.is_as_declared()) {
        count_frames(file, outline);
    }
    return outline;
}

} // namespace host
