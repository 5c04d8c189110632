#include "host/audio/ogg_end.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>

namespace host {

namespace {

constexpr std::size_t searched_bytes = 131072; // a page is smaller than half of it
constexpr std::size_t page_header_bytes = 27;
constexpr std::size_t flags_place = 5;
constexpr std::size_t segment_count_place = 26;
constexpr std::uint8_t end_flag = 4;

bool is_end_page(std::string_view page) {
    const auto number_at = [page](std::size_t place) { return static_cast<std::uint8_t>(page[place]); };
    const std::size_t segments = number_at(segment_count_place);
    if ((number_at(flags_place) & end_flag) == 0 || page.size() < page_header_bytes + segments) {
        return false;
    }
    const std::string_view sizes = page.substr(page_header_bytes, segments);
    const auto add = [](std::size_t sum, char size) { return sum + static_cast<std::uint8_t>(size); };
    const std::size_t content_bytes = std::accumulate(sizes.begin(), sizes.end(), std::size_t{0}, add);
    return page.size() >= page_header_bytes + segments + content_bytes;
}

} // namespace

bool has_ogg_end(binary_file& file) {
    using namespace std::string_view_literals;
    const auto tail_bytes = static_cast<std::size_t>(std::min<std::uint64_t>(file.size_bytes(), searched_bytes));
    std::string tail(tail_bytes, '\0');
    file.read_at(file.size_bytes() - tail_bytes, std::as_writable_bytes(std::span(tail)));
    const std::size_t last_page = tail.rfind("OggS\0"sv); // with the version
    return last_page != std::string::npos && tail.size() - last_page >= page_header_bytes &&
           is_end_page(std::string_view(tail).substr(last_page));
}

} // namespace host
