#include "host/audio/sndfile_speakers.h"

#include "host/audio/default_mask.h"
#include "velmora/channel_mask.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>

namespace host {

namespace {

namespace speaker = velmora::speaker;

constexpr std::size_t most_prescribed = 8;

/// FLAC's assignments by channel count, all in mask order.
constexpr std::array<std::uint32_t, most_prescribed + 1> flac_masks{0, 0x4, 0x3, 0x7, 0x33, 0x37, 0x3F, 0x70F, 0x63F};

constexpr std::uint32_t left = speaker::front_left;
constexpr std::uint32_t right = speaker::front_right;
constexpr std::uint32_t centre = speaker::front_centre;
constexpr std::uint32_t lfe = speaker::low_frequency;
constexpr std::uint32_t back_left = speaker::back_left;
constexpr std::uint32_t back_right = speaker::back_right;

/// Those of Vorbis, and of Opus, which took them over.
constexpr std::array<std::array<std::uint32_t, most_prescribed>, most_prescribed + 1> ogg_speakers{{
    {},
    {centre},
    {left, right},
    {left, centre, right},
    {left, right, back_left, back_right},
    {left, centre, right, back_left, back_right},
    {left, centre, right, back_left, back_right, lfe},
    {left, centre, right, speaker::side_left, speaker::side_right, speaker::back_centre, lfe},
    {left, centre, right, speaker::side_left, speaker::side_right, back_left, back_right, lfe},
}};

/// The library's name of each mask bit, lowest first.
constexpr std::array<int, 18> map_names{
    SF_CHANNEL_MAP_LEFT,
    SF_CHANNEL_MAP_RIGHT,
    SF_CHANNEL_MAP_CENTER,
    SF_CHANNEL_MAP_LFE,
    SF_CHANNEL_MAP_REAR_LEFT,
    SF_CHANNEL_MAP_REAR_RIGHT,
    SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER,
    SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER,
    SF_CHANNEL_MAP_REAR_CENTER,
    SF_CHANNEL_MAP_SIDE_LEFT,
    SF_CHANNEL_MAP_SIDE_RIGHT,
    SF_CHANNEL_MAP_TOP_CENTER,
    SF_CHANNEL_MAP_TOP_FRONT_LEFT,
    SF_CHANNEL_MAP_TOP_FRONT_CENTER,
    SF_CHANNEL_MAP_TOP_FRONT_RIGHT,
    SF_CHANNEL_MAP_TOP_REAR_LEFT,
    SF_CHANNEL_MAP_TOP_REAR_CENTER,
    SF_CHANNEL_MAP_TOP_REAR_RIGHT,
};

/// The library has two names for the front speakers.
int usual_name(int name) {
    switch (name) {
    case SF_CHANNEL_MAP_FRONT_LEFT:
        return SF_CHANNEL_MAP_LEFT;
    case SF_CHANNEL_MAP_FRONT_RIGHT:
        return SF_CHANNEL_MAP_RIGHT;
    case SF_CHANNEL_MAP_MONO:
    case SF_CHANNEL_MAP_FRONT_CENTER:
        return SF_CHANNEL_MAP_CENTER;
    default:
        return name;
    }
}

} // namespace

speaker_list prescribed_speakers(int sndfile_format, std::uint32_t channels) {
    const int container = sndfile_format & SF_FORMAT_TYPEMASK;
    if (container == SF_FORMAT_FLAC && channels <= most_prescribed) {
        return speakers_of(flac_masks[channels]);
    }
    if (container == SF_FORMAT_OGG && channels <= most_prescribed) {
        const auto& speakers = ogg_speakers[channels];
        return {speakers.begin(), std::next(speakers.begin(), static_cast<std::ptrdiff_t>(channels))};
    }
    return speakers_of(default_mask(channels));
}

speaker_list speakers_of_map(std::span<const int> map) {
    speaker_list speakers;
    for (const int name : map) {
        const auto found = std::find(map_names.begin(), map_names.end(), usual_name(name));
        speakers.push_back(found == map_names.end() ? 0 : std::uint32_t{1} << (found - map_names.begin()));
    }
    return speakers;
}

std::vector<int> map_of(std::uint32_t mask) {
    std::vector<int> map;
    for (const std::uint32_t bit : speakers_of(mask)) {
        const auto place = static_cast<std::size_t>(std::countr_zero(bit));
        if (place >= map_names.size()) {
            return {};
        }
        map.push_back(map_names[place]);
    }
    return map;
}

} // namespace host
