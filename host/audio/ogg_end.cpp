#include "host/audio/ogg_end.h"

#include "host/audio/ogg_page.h"

#include <algorithm>
#include <string>

namespace host {

namespace {

constexpr std::size_t searched_bytes = 131072; // a page is smaller than half of it

} // namespace

bool has_ogg_end(binary_file& file) {
    const auto tail_bytes = static_cast<std::size_t>(std::min<std::uint64_t>(file.size_bytes(), searched_bytes));
    std::string tail(tail_bytes, '\0');
    file.read_at(file.size_bytes() - tail_bytes, std::as_writable_bytes(std::span(tail)));
    const std::size_t begin = tail.rfind(ogg_page_start);
    if (begin == std::string::npos) {
        return false;
    }
    const auto bytes = std::as_bytes(std::span(tail)).subspan(begin);
    const auto last = parse_ogg_header(bytes);
    return last && last->ends_stream && last->size_bytes <= bytes.size();
}

} // namespace host
