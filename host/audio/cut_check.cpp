#include "host/audio/cut_check.h"

#include "host/audio/audio_error.h"
#include "host/audio/byte_order.h"
#include "host/audio/chunks.h"
#include "host/audio/mpeg_end.h"
#include "host/audio/ogg_chain.h"
#include "host/audio/ogg_end.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace host {

namespace {

struct chunked_container {
    std::string_view start;
    const chunk_rules& rules;
    std::uint64_t first_chunk_bytes;
    std::string_view audio_chunk;
    std::uint64_t least_unknown_size; ///< this size of the audio and any above: the writer did not know it
};

constexpr std::uint64_t unknown_32_bits = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t unknown_64_bits = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t wave64_header_bytes = 24;

constexpr std::array<chunked_container, 4> containers{{
    {"FORM", aiff_chunks, 12, "SSND", unknown_32_bits},
    {"RIFX", aiff_chunks, 12, "data", unknown_32_bits},
    {"riff", wave64_chunks, 40, "data", unknown_64_bits - wave64_header_bytes},
    {"caff", caf_chunks, 8, "data", unknown_64_bits},
}};

std::string first_letters(binary_file& file) {
    std::string letters(4, '\0');
    file.read_at(0, std::as_writable_bytes(std::span(letters)));
    return letters;
}

std::optional<chunk> known_audio(binary_file& file, const chunked_container& container) {
    const auto audio = find_chunk(file, container.rules, container.first_chunk_bytes, container.audio_chunk);
    return audio && audio->size_bytes < container.least_unknown_size ? audio : std::nullopt;
}

/// An AU file is one piece, whose place and size its header has.
std::optional<chunk> known_audio_of_au(binary_file& file) {
    std::array<std::byte, 8> header;
    if (file.read_at(4, header) != header.size()) {
        return std::nullopt;
    }
    const auto begin_bytes = load<std::uint32_t>(std::span(header).first(4), std::endian::big);
    const auto size_bytes = load<std::uint32_t>(std::span(header).last(4), std::endian::big);
    const bool is_known = size_bytes != unknown_32_bits && begin_bytes <= file.size_bytes();
    return is_known ? std::optional(chunk{begin_bytes, size_bytes}) : std::nullopt;
}

std::optional<chunk> find_known_audio(binary_file& file, std::string_view letters) {
    const auto found = std::find_if(containers.begin(), containers.end(),
                                    [&](const chunked_container& container) { return container.start == letters; });
    if (found != containers.end()) {
        return known_audio(file, *found);
    }
    return letters == ".snd" ? known_audio_of_au(file) : std::nullopt;
}

void check_ogg(binary_file& file) {
    if (!has_ogg_end(file)) {
        throw audio_error(file.path(), "is cut short: the end of the Ogg stream is not there");
    }
    if (is_ogg_chain(file)) {
        throw audio_error(file.path(), "holds several Ogg streams one behind the other; only the first could be read");
    }
}

} // namespace

void check_is_not_cut(binary_file& file) {
    const std::string letters = first_letters(file);
    if (letters == "OggS") {
        check_ogg(file);
    }
    check_mpeg_is_not_cut(file);
    if (const auto audio = find_known_audio(file, letters)) {
        check_is_whole(file, *audio);
    }
}

} // namespace host
