#include "host/audio/byte_order.h"
#include "host/audio/file_speakers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace host {

namespace {

constexpr std::uint32_t comment_block = 4;
constexpr std::uint32_t last_block_flag = 0x80;

/// The text of the file's comments, or nothing. Lengths between the comments are left in: they are not letters of a
/// tag.
std::string read_comments(binary_file& file) {
    std::uint64_t position_bytes = 4;
    std::array<std::byte, 4> header;
    while (file.read_at(position_bytes, header) == header.size()) {
        const auto kind = std::to_integer<std::uint32_t>(header[0]);
        const auto size_bytes = load<std::uint32_t>(std::span(header).last(3), std::endian::big);
        if ((kind & ~last_block_flag) == comment_block) {
            std::string comments(std::min<std::uint64_t>(size_bytes, file.size_bytes()), '\0');
            file.read(std::as_writable_bytes(std::span(comments)));
            return comments;
        }
        if ((kind & last_block_flag) != 0) {
            break;
        }
        position_bytes += header.size() + size_bytes;
    }
    return {};
}

char upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

} // namespace

speaker_list flac_speakers(binary_file& file) {
    constexpr std::string_view tag = "WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0X";
    std::string comments = read_comments(file);
    std::transform(comments.begin(), comments.end(), comments.begin(), upper);
    const std::size_t found = comments.find(tag);
    if (found == std::string::npos) {
        return {};
    }
    std::uint32_t mask = 0;
    const char* const digits = comments.data() + found + tag.size();
    std::from_chars(digits, comments.data() + comments.size(), mask, 16);
    return speakers_of(mask);
}

} // namespace host
