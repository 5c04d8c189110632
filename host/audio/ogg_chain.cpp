#include "host/audio/ogg_chain.h"

#include <array>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string_view>

namespace host {

namespace {

constexpr std::size_t page_header_bytes = 27;
constexpr std::size_t flags_place = 5;
constexpr std::size_t segment_count_place = 26;
constexpr std::size_t most_segments = 255;
constexpr std::byte begin_flag{2};

struct ogg_page {
    bool begins_stream;
    std::uint64_t size_bytes;
};

/// Nothing where no page begins.
std::optional<ogg_page> page_at(binary_file& file, std::uint64_t position_bytes) {
    std::array<std::byte, page_header_bytes + most_segments> room{};
    const std::size_t there_bytes = file.read_at(position_bytes, room);
    if (there_bytes < page_header_bytes ||
        std::string_view(reinterpret_cast<const char*>(room.data()), 4) != "OggS") { // bytes as letters
        return std::nullopt;
    }
    const auto segments = std::to_integer<std::size_t>(room[segment_count_place]);
    const auto sizes = std::span(room).subspan(page_header_bytes, segments);
    const auto add = [](std::uint64_t sum, std::byte size) { return sum + std::to_integer<std::uint64_t>(size); };
    const std::uint64_t content_bytes = std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0}, add);
    return ogg_page{(room[flags_place] & begin_flag) != std::byte{0}, page_header_bytes + segments + content_bytes};
}

} // namespace

bool is_ogg_chain(binary_file& file) {
    std::uint64_t position_bytes = 0;
    bool is_past_beginnings = false;
    while (const auto page = page_at(file, position_bytes)) {
        if (page->begins_stream && is_past_beginnings) {
            return true;
        }
        is_past_beginnings = !page->begins_stream;
        position_bytes += page->size_bytes;
    }
    return false;
}

} // namespace host
