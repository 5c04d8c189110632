#include "host/audio/mpeg_end.h"

#include "host/audio/audio_error.h"
#include "host/audio/byte_order.h"
#include "host/audio/mpeg_frame.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace host {

namespace {

struct declared_audio {
    std::uint64_t frames;
    std::uint64_t bytes; ///< from the start of the declaring frame on
};

constexpr std::uint32_t has_frames_and_bytes = 3;

bool begins_with(std::span<const std::byte> bytes, std::string_view letters) {
    return std::equal(letters.begin(), letters.end(), bytes.begin(),
                      [](char letter, std::byte byte) { return static_cast<std::byte>(letter) == byte; });
}

/// Behind the tags in front of the audio (ID3v2), whose sizes have seven bits a byte.
std::uint64_t skip_tags(binary_file& file) {
    std::uint64_t position_bytes = 0;
    std::array<std::byte, 10> header;
    while (file.read_at(position_bytes, header) == header.size() && begins_with(header, "ID3")) {
        std::uint64_t size_bytes = 0;
        for (const std::byte digit : std::span(header).last(4)) {
            size_bytes = size_bytes << 7 | std::to_integer<std::uint64_t>(digit & std::byte{0x7F});
        }
        position_bytes += header.size() + size_bytes;
    }
    return position_bytes;
}

std::optional<mpeg_frame> frame_at(binary_file& file, std::uint64_t position_bytes) {
    std::array<std::byte, mpeg_header_bytes> header;
    return file.read_at(position_bytes, header) == header.size() ? parse_mpeg_header(header) : std::nullopt;
}

/// What a frame that begins at `position_bytes` declares instead of having audio.
std::optional<declared_audio> declaration_in(binary_file& file, std::uint64_t position_bytes, const mpeg_frame& frame) {
    std::array<std::byte, 16> content;
    if (file.read_at(position_bytes + frame.content_bytes, content) != content.size() ||
        !(begins_with(content, "Xing") || begins_with(content, "Info"))) {
        return std::nullopt;
    }
    const auto number_at = [&](std::size_t place) {
        return load<std::uint32_t>(std::span(content).subspan(place, 4), std::endian::big);
    };
    const bool is_complete = (number_at(4) & has_frames_and_bytes) == has_frames_and_bytes;
    return is_complete ? std::optional(declared_audio{number_at(8), number_at(12)}) : std::nullopt;
}

/// How many whole frames follow each other from there on.
std::uint64_t count_frames(binary_file& file, std::uint64_t position_bytes) {
    std::uint64_t frames = 0;
    auto frame = frame_at(file, position_bytes);
    while (frame && position_bytes + frame->size_bytes <= file.size_bytes()) {
        ++frames;
        position_bytes += frame->size_bytes;
        frame = frame_at(file, position_bytes);
    }
    return frames;
}

} // namespace

void check_mpeg_is_not_cut(binary_file& file) {
    const std::uint64_t begin_bytes = skip_tags(file);
    const auto first = frame_at(file, begin_bytes);
    if (!first) {
        return;
    }
    const std::uint64_t there_bytes = file.size_bytes() - begin_bytes;
    if (there_bytes < first->size_bytes) {
        throw audio_error(file.path(), "is cut short: it ends within the first frame");
    }
    const auto declared = declaration_in(file, begin_bytes, *first);
    if (!declared || declared->bytes <= there_bytes) {
        return;
    }
    const std::uint64_t frames = count_frames(file, begin_bytes + first->size_bytes);
    if (frames < declared->frames) {
        throw audio_error(file.path(), "is cut short: of " + std::to_string(declared->frames) + " MPEG frames only " +
                                           std::to_string(frames) + " are there");
    }
}

} // namespace host
