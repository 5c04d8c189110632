#include "effects/channels/upmix_core.h"

#include "effects/channels/speakers_core.h"
#include "velmora/channel_mask.h"

#include <array>
#include <bit>

namespace kelvane {

namespace {

using namespace velmora::speaker;

/// A speaker that lies between two others.
struct speaker_between {
    std::uint32_t speaker;
    std::uint32_t neighbours;
};

constexpr std::array<speaker_between, 6> speakers_between{{
    {side_left, front_left | back_left},
    {side_right, front_right | back_right},
    {front_centre, front_left | front_right},
    {back_centre, back_left | back_right},
    {top_front_centre, top_front_left | top_front_right},
    {top_back_centre, top_back_left | top_back_right},
}};

constexpr std::uint32_t left_speakers = front_left | front_left_of_centre | back_left | side_left;
constexpr std::uint32_t right_speakers = front_right | front_right_of_centre | back_right | side_right;

/// The input speakers that an output speaker hears, each with the same weight.
struct source {
    std::uint32_t speakers;
    double weight;
};

constexpr source silence{0, 0.0};

source source_of(std::uint32_t speaker, std::uint32_t input_mask) {
    if (has_any(input_mask, speaker)) {
        return {speaker, 1.0};
    }
    for (const speaker_between& between : speakers_between) {
        if (between.speaker == speaker && has_all(input_mask, between.neighbours)) {
            return {between.neighbours, 0.5};
        }
    }
    if (has_any(velmora::layout::rear_pair, speaker) && has_any(input_mask, back_centre)) {
        return {back_centre, 1.0};
    }
    if (has_any(left_speakers, speaker)) {
        return {has_any(input_mask, front_left) ? front_left : front_centre, 1.0};
    }
    if (has_any(right_speakers, speaker)) {
        return {has_any(input_mask, front_right) ? front_right : front_centre, 1.0};
    }
    return silence;
}

bool can_spread(std::uint32_t input_mask, std::uint32_t target_mask) {
    const std::uint32_t without_place = input_mask & ~target_mask;
    return without_place == 0 || without_place == front_centre;
}

} // namespace

std::optional<channel_matrix> make_upmix_matrix(std::uint32_t input_mask, std::size_t inputs,
                                                std::uint32_t target_mask) {
    if (!can_spread(input_mask, target_mask)) {
        return std::nullopt;
    }
    channel_matrix matrix(static_cast<std::size_t>(std::popcount(target_mask)), inputs);
    for (std::size_t output = 0; output < matrix.outputs(); ++output) {
        const source heard = source_of(speaker_at(target_mask, output), input_mask);
        for (std::size_t input = 0; input < inputs; ++input) {
            const bool is_heard = has_any(heard.speakers, speaker_at(input_mask, input));
            matrix.weight(output, input) = is_heard ? heard.weight : 0.0;
        }
    }
    return matrix;
}

} // namespace kelvane
