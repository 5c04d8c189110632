#include "host/audio/ogg_page.h"

#include <gtest/gtest.h>

#include <string>

namespace host {
namespace {

/// A header whose segments are of these sizes: the start, the flags, 20 bytes that tell no size, and the sizes.
std::string header(char flags, const std::string& sizes) {
    return std::string(ogg_page_start) + flags + std::string(20, '\x7F') + static_cast<char>(sizes.size()) + sizes;
}

std::optional<ogg_page> parse(std::string_view bytes) {
    return parse_ogg_header(std::as_bytes(std::span(bytes)));
}

TEST(OggPage, TellsItsSizeAndItsPlaceInTheStream) {
    const struct {
        std::string bytes;
        std::uint64_t size_bytes;
        bool begins_stream;
        bool ends_stream;
    } cases[]{{header(0, ""), 27, false, false},
              {header(2, "\x1E"), 28 + 30, true, false},
              {header(5, "\xFF\xFF\x03"), 30 + 513, false, true},
              {header(6, std::string(255, '\xFF')) + "content", 282 + 65025, true, true}};
    for (const auto& [bytes, size_bytes, begins_stream, ends_stream] : cases) {
        const auto page = parse(bytes);
        ASSERT_TRUE(page) << size_bytes;
        EXPECT_EQ(page->size_bytes, size_bytes);
        EXPECT_EQ(page->begins_stream, begins_stream) << size_bytes;
        EXPECT_EQ(page->ends_stream, ends_stream) << size_bytes;
    }
}

TEST(OggPage, IsNoneWithoutAWholeHeader) {
    const std::string whole = header(2, "abc");
    for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
        EXPECT_FALSE(parse(whole.substr(0, bytes))) << bytes;
    }
    EXPECT_FALSE(parse("oggS" + whole.substr(4)));
    EXPECT_FALSE(parse("OggS\x01" + whole.substr(5)));
}

} // namespace
} // namespace host
