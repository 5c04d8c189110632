#include "host/audio/chunks.h"

#include "host/audio/audio_error.h"
#include "host/audio/byte_order.h"

#include <algorithm>
#include <array>
#include <string>

namespace host {

namespace {

constexpr std::size_t most_header_bytes = 24;

struct named_chunk {
    std::array<char, 4> name;
    chunk place;
};

/// The chunk whose header begins at `position_bytes`; nothing where the file ends.
std::optional<named_chunk> chunk_at(binary_file& file, const chunk_rules& rules, std::uint64_t position_bytes) {
    std::array<std::byte, most_header_bytes> room;
    const auto header = std::span(room).first(rules.name_bytes + rules.size_bytes);
    if (file.read_at(position_bytes, header) != header.size()) {
        return std::nullopt;
    }
    named_chunk found{};
    std::transform(header.begin(), header.begin() + 4, found.name.begin(),
                   [](std::byte letter) { return static_cast<char>(letter); });
    found.place = {position_bytes + header.size(), load<std::uint64_t>(header.subspan(rules.name_bytes), rules.order)};
    if (rules.size_counts_header) {
        found.place.size_bytes -= std::min<std::uint64_t>(found.place.size_bytes, header.size());
    }
    return found;
}

} // namespace

std::optional<chunk> find_chunk(binary_file& file, const chunk_rules& rules, std::uint64_t first_bytes,
                                std::string_view name) {
    std::uint64_t position_bytes = first_bytes;
    while (const auto next = chunk_at(file, rules, position_bytes)) {
        const chunk& place = next->place;
        if (std::string_view(next->name.data(), next->name.size()) == name) {
            return place;
        }
        if (place.size_bytes > file.size_bytes() - place.begin_bytes) {
            return std::nullopt;
        }
        position_bytes = (place.begin_bytes + place.size_bytes + rules.alignment_bytes - 1) / rules.alignment_bytes *
                         rules.alignment_bytes;
    }
    return std::nullopt;
}

void check_is_whole(const binary_file& file, const chunk& audio) {
    const std::uint64_t there_bytes = file.size_bytes() - audio.begin_bytes;
    if (audio.size_bytes > there_bytes) {
        throw audio_error(file.path(), "is cut short: of " + std::to_string(audio.size_bytes) +
                                           " bytes of audio only " + std::to_string(there_bytes) + " are there");
    }
}

} // namespace host
