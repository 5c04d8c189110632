// The speaker bits of a block's channel mask.
#pragma once

#include <stdint.h>

namespace velmora {

/// One bit per speaker. The samples of a frame follow the order of the set bits, lowest first.
namespace speaker {
inline constexpr uint32_t front_left = 0x1;
inline constexpr uint32_t front_right = 0x2;
inline constexpr uint32_t front_centre = 0x4;
inline constexpr uint32_t low_frequency = 0x8;
inline constexpr uint32_t back_left = 0x10;
inline constexpr uint32_t back_right = 0x20;
inline constexpr uint32_t front_left_of_centre = 0x40;
inline constexpr uint32_t front_right_of_centre = 0x80;
inline constexpr uint32_t back_centre = 0x100;
inline constexpr uint32_t side_left = 0x200;
inline constexpr uint32_t side_right = 0x400;
inline constexpr uint32_t top_centre = 0x800;
inline constexpr uint32_t top_front_left = 0x1000;
inline constexpr uint32_t top_front_centre = 0x2000;
inline constexpr uint32_t top_front_right = 0x4000;
inline constexpr uint32_t top_back_left = 0x8000;
inline constexpr uint32_t top_back_centre = 0x10000;
inline constexpr uint32_t top_back_right = 0x20000;
} // namespace speaker

/// Whole layouts that have a name of their own.
namespace layout {
inline constexpr uint32_t mono = speaker::front_centre;
inline constexpr uint32_t stereo = speaker::front_left | speaker::front_right;
inline constexpr uint32_t rear_pair = speaker::back_left | speaker::back_right;
inline constexpr uint32_t quad = stereo | rear_pair;
inline constexpr uint32_t surround_5_1 = quad | speaker::front_centre | speaker::low_frequency;
inline constexpr uint32_t surround_7_1 = surround_5_1 | speaker::side_left | speaker::side_right;
} // namespace layout

} // namespace velmora
