#include "host/audio/riff_header.h"

#include "host/audio/audio_error.h"
#include "host/audio/byte_order.h"
#include "host/audio/channel_order.h"
#include "host/audio/chunks.h"
#include "host/audio/default_mask.h"
#include "host/audio/riff_format_chunk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <string_view>

namespace host {

namespace {

constexpr std::uint64_t first_chunk_bytes = 12;
constexpr std::uint32_t unknown_size = 0xFFFFFFFF;

/// Sizes of the whole file, less eight bytes, and of its samples, as the header claims them.
struct claimed_sizes {
    std::uint64_t riff_bytes;
    std::uint64_t data_bytes;
};

/// What tells one kind of file from another: the first twelve bytes.
enum class riff_kind { none, wav, rf64 };

std::string_view text_at(std::span<const std::byte> bytes, std::size_t first) {
    // A byte may be looked at through any character type.
    return {reinterpret_cast<const char*>(bytes.data()) + first, 4};
}

riff_kind kind_of(std::span<const std::byte> start) {
    if (text_at(start, 8) != "WAVE") {
        return riff_kind::none;
    }
    const std::string_view name = text_at(start, 0);
    return name == "RIFF" ? riff_kind::wav : name == "RF64" ? riff_kind::rf64 : riff_kind::none;
}

chunk required_chunk(binary_file& file, std::string_view name) {
    const auto found = find_chunk(file, riff_chunks, first_chunk_bytes, name);
    if (!found) {
        throw audio_error(file.path(), "is damaged or cut short: it has no \"" + std::string(name) + "\" chunk");
    }
    return *found;
}

riff_format read_format(binary_file& file) {
    const chunk place = required_chunk(file, "fmt ");
    std::array<std::byte, riff_format_most_bytes> room;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(place.size_bytes, room.size()));
    const std::size_t there = file.read_at(place.begin_bytes, std::span(room).first(wanted));
    const auto format = parse_riff_format(std::span(room).first(there));
    if (!format || format->channels == 0 || format->sample_rate_hz == 0 || format->frame_bytes == 0) {
        throw audio_error(file.path(), "is damaged: its header makes no sense");
    }
    if (format->channels > most_channels) {
        throw audio_error(file.path(), "has " + std::to_string(format->channels) + " channels; at most " +
                                           std::to_string(most_channels) + " can be read");
    }
    return *format;
}

/// The sizes in the 64-bit chunk of an RF64 file, which its 32-bit ones refer to.
claimed_sizes read_wide_sizes(binary_file& file) {
    std::array<std::byte, 16> content;
    if (file.read_at(required_chunk(file, "ds64").begin_bytes, content) != content.size()) {
        throw audio_error(file.path(), "is damaged or cut short: its header ends early");
    }
    return {load<std::uint64_t>(std::span(content).first(8)), load<std::uint64_t>(std::span(content).last(8))};
}

/// Whether the program that wrote the file could not come back to fill in the size, as in a pipe: the value for
/// unknown, nothing in a file that claims to end here, or the whole frames of 0x7FFFF000 bytes.
bool is_open_ended(const claimed_sizes& claimed, const chunk& data, std::size_t frame_bytes) {
    constexpr std::uint64_t stand_in_bytes = 0x7FFFF000;
    if (claimed.data_bytes == 0) {
        return claimed.riff_bytes == unknown_size || claimed.riff_bytes + 8 <= data.begin_bytes;
    }
    return claimed.data_bytes == unknown_size || claimed.data_bytes == ~std::uint64_t{0} ||
           (claimed.data_bytes <= stand_in_bytes && claimed.data_bytes + frame_bytes > stand_in_bytes);
}

/// The samples' place with the size that holds; `data` is the chunk as the row of chunks has it.
chunk resolved_data(binary_file& file, const chunk& data, riff_kind kind, std::uint32_t riff_bytes,
                    std::size_t frame_bytes) {
    claimed_sizes claimed{riff_bytes, data.size_bytes};
    if (kind == riff_kind::rf64 && data.size_bytes == unknown_size) {
        claimed = read_wide_sizes(file);
    }
    chunk resolved{data.begin_bytes, claimed.data_bytes};
    if (is_open_ended(claimed, data, frame_bytes)) {
        resolved.size_bytes = file.size_bytes() - data.begin_bytes;
    }
    check_is_whole(file, resolved);
    return resolved;
}

std::uint32_t usable_mask(std::uint32_t mask, std::uint32_t channels) {
    const bool is_usable = mask_of(speakers_of(mask)) && static_cast<std::uint32_t>(std::popcount(mask)) == channels;
    return is_usable ? mask : default_mask(channels);
}

} // namespace

std::optional<riff_header> read_riff_header(binary_file& file) {
    std::array<std::byte, first_chunk_bytes> start;
    const bool is_complete = file.read_at(0, start) == start.size();
    const riff_kind kind = is_complete ? kind_of(start) : riff_kind::none;
    if (kind == riff_kind::none) {
        return std::nullopt;
    }
    const riff_format format = read_format(file);
    const auto riff_bytes = load<std::uint32_t>(std::span(start).subspan(4, 4));
    const chunk data = resolved_data(file, required_chunk(file, "data"), kind, riff_bytes, format.frame_bytes);
    return riff_header{{format.sample_rate_hz, format.channels, usable_mask(format.channel_mask, format.channels)},
                       format.samples,
                       data.begin_bytes,
                       data.size_bytes};
}

} // namespace host
