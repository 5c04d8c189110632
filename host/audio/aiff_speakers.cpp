#include "host/audio/byte_order.h"
#include "host/audio/chunks.h"
#include "host/audio/file_speakers.h"
#include "velmora/channel_mask.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr std::uint32_t bitmap_tag = 0x10000; // the bitmap that follows has the mask's own bits

constexpr std::uint32_t left = velmora::speaker::front_left;
constexpr std::uint32_t right = velmora::speaker::front_right;
constexpr std::uint32_t centre = velmora::speaker::front_centre;
constexpr std::uint32_t lfe = velmora::speaker::low_frequency;
constexpr std::uint32_t back_left = velmora::speaker::back_left;
constexpr std::uint32_t back_right = velmora::speaker::back_right;
constexpr std::uint32_t back = velmora::speaker::back_centre;

struct tagged_layout {
    std::uint32_t tag; ///< a number, and the count of channels in the low half
    std::array<std::uint32_t, 7> speakers;
};

/// The surround pair of these layouts is the mask's back pair. A tag of eight channels is not here: programs do not
/// agree on which of its two pairs is the side pair, and most write the order of the default mask.
constexpr std::array<tagged_layout, 27> layouts{{
    {0x640001, {centre}},
    {0x650002, {left, right}},
    {0x6C0004, {left, right, back_left, back_right}},
    {0x6D0005, {left, right, back_left, back_right, centre}},
    {0x6E0006, {left, right, back_left, back_right, centre, back}},
    {0x710003, {left, right, centre}},
    {0x720003, {centre, left, right}},
    {0x730004, {left, right, centre, back}},
    {0x740004, {centre, left, right, back}},
    {0x750005, {left, right, centre, back_left, back_right}},
    {0x760005, {left, right, back_left, back_right, centre}},
    {0x770005, {left, centre, right, back_left, back_right}},
    {0x780005, {centre, left, right, back_left, back_right}},
    {0x790006, {left, right, centre, lfe, back_left, back_right}},
    {0x7A0006, {left, right, back_left, back_right, centre, lfe}},
    {0x7B0006, {left, centre, right, back_left, back_right, lfe}},
    {0x7C0006, {centre, left, right, back_left, back_right, lfe}},
    {0x7D0007, {left, right, centre, lfe, back_left, back_right, back}},
    {0x830003, {left, right, back}},
    {0x840004, {left, right, back_left, back_right}},
    {0x850003, {left, right, lfe}},
    {0x860004, {left, right, lfe, back}},
    {0x870005, {left, right, lfe, back_left, back_right}},
    {0x880004, {left, right, centre, lfe}},
    {0x890005, {left, right, centre, lfe, back}},
    {0x8A0005, {left, right, back_left, back_right, lfe}},
    {0x8B0006, {left, right, back_left, back_right, centre, back}},
}};

} // namespace

speaker_list aiff_speakers(binary_file& file) {
    constexpr std::uint64_t first_chunk_bytes = 12;
    std::array<std::byte, 8> content;
    const auto place = find_chunk(file, aiff_chunks, first_chunk_bytes, "CHAN");
    if (!place || file.read_at(place->begin_bytes, content) != content.size()) {
        return {};
    }
    const auto tag = load<std::uint32_t>(std::span(content).first(4), std::endian::big);
    if (tag == bitmap_tag) {
        return speakers_of(load<std::uint32_t>(std::span(content).last(4), std::endian::big));
    }
    const auto has_tag = [tag](const tagged_layout& layout) { return layout.tag == tag; };
    const auto found = std::find_if(layouts.begin(), layouts.end(), has_tag);
    if (found == layouts.end()) {
        return {};
    }
    return {found->speakers.begin(), found->speakers.begin() + (tag & 0xFFFF)};
}

} // namespace host
