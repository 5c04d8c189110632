#include "host/audio/ogg_chain.h"

#include "host/audio/ogg_page.h"

#include <array>

namespace host {

namespace {

std::optional<ogg_page> page_at(binary_file& file, std::uint64_t position_bytes) {
    std::array<std::byte, most_ogg_page_header_bytes> header;
    const std::size_t there_bytes = file.read_at(position_bytes, header);
    return parse_ogg_header(std::span(header).first(there_bytes));
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
