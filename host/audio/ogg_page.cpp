#include "host/audio/ogg_page.h"

#include <algorithm>
#include <numeric>

namespace host {

namespace {

constexpr std::size_t flags_place = 5;
constexpr std::size_t segment_count_place = 26;
constexpr std::size_t sizes_place = 27;
constexpr std::byte begin_flag{2};
constexpr std::byte end_flag{4};

} // namespace

std::optional<ogg_page> parse_ogg_header(std::span<const std::byte> bytes) {
    const bool begins = bytes.size() >= sizes_place && std::ranges::equal(bytes.first(ogg_page_start.size()),
                                                                          std::as_bytes(std::span(ogg_page_start)));
    const std::size_t segments = begins ? std::to_integer<std::size_t>(bytes[segment_count_place]) : 0;
    if (!begins || bytes.size() < sizes_place + segments) {
        return std::nullopt;
    }
    const auto sizes = bytes.subspan(sizes_place, segments);
    const auto add = [](std::uint64_t sum, std::byte size) { return sum + std::to_integer<std::uint64_t>(size); };
    const auto is_set = [flags = bytes[flags_place]](std::byte flag) { return (flags & flag) != std::byte{0}; };
    return ogg_page{std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{sizes_place + segments}, add),
                    is_set(begin_flag), is_set(end_flag)};
}

} // namespace host
