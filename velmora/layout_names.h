// The names by which people know the common layouts.
#pragma once

#include "velmora/channel_mask.h"

#include <stdint.h>

namespace velmora {

/// A channel mask and its zero-terminated name.
struct named_layout {
    uint32_t channel_mask;
    const char* name;
};

/// Each mask once, from fewer speakers to more.
inline constexpr named_layout named_layouts[] = {
    {layout::mono, "mono"},
    {layout::stereo, "stereo"},
    {layout::rear_pair, "rear pair"},
    {layout::stereo | speaker::low_frequency, "2.1"},
    {layout::stereo | speaker::front_centre, "3.0"},
    {layout::quad, "quad"},
    {layout::quad | speaker::low_frequency, "4.1"},
    {layout::quad | speaker::front_centre, "5.0"},
    {layout::surround_5_1, "5.1"},
    {layout::stereo | speaker::front_centre | speaker::low_frequency | speaker::side_left | speaker::side_right,
     "5.1 (side)"},
    {layout::stereo | speaker::front_centre | speaker::low_frequency | speaker::back_centre | speaker::side_left |
         speaker::side_right,
     "6.1"},
    {layout::surround_7_1, "7.1"},
};

} // namespace velmora
