// One page of an Ogg file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace host {

/// What its header tells.
struct ogg_page {
    std::uint64_t size_bytes; ///< with the header
    bool begins_stream;
    bool ends_stream;
};

/// What every page begins with; the zero is the version.
inline constexpr std::string_view ogg_page_start("OggS\0", 5);

inline constexpr std::size_t most_ogg_page_header_bytes = 27 + 255;

/// The page that begins with these bytes. Nothing when they are no header or less than a whole one. After RFC 3533
/// (Pfeiffer, "The Ogg Encapsulation Format", 2003).
std::optional<ogg_page> parse_ogg_header(std::span<const std::byte> bytes);

} // namespace host
