#include "host/chain/layout_text.h"

#include "velmora/channel_mask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <fmt/format.h>
#include <string_view>

namespace host {

namespace {

struct named_layout {
    std::uint32_t channel_mask;
    std::string_view name;
};

using namespace velmora::speaker;

constexpr std::array<named_layout, 12> common_layouts{{
    {velmora::layout::mono, "mono"},
    {velmora::layout::stereo, "stereo"},
    {velmora::layout::stereo | low_frequency, "2.1"},
    {velmora::layout::stereo | front_centre, "3.0"},
    {velmora::layout::rear_pair, "rear pair"},
    {velmora::layout::quad, "quad"},
    {velmora::layout::quad | low_frequency, "4.1"},
    {velmora::layout::quad | front_centre, "5.0"},
    {velmora::layout::surround_5_1, "5.1"},
    {velmora::layout::stereo | front_centre | low_frequency | side_left | side_right, "5.1 (side)"},
    {velmora::layout::stereo | front_centre | low_frequency | back_centre | side_left | side_right, "6.1"},
    {velmora::layout::surround_7_1, "7.1"},
}};

} // namespace

std::string layout_text(std::uint32_t channels, std::uint32_t channel_mask) {
    const auto found = std::find_if(common_layouts.begin(), common_layouts.end(),
                                    [&](const named_layout& known) { return known.channel_mask == channel_mask; });
    if (found != common_layouts.end() && static_cast<std::uint32_t>(std::popcount(channel_mask)) == channels) {
        return std::string(found->name);
    }
    return fmt::format("{} channel{} (mask 0x{:X})", channels, channels == 1 ? "" : "s", channel_mask);
}

std::string format_text(const audio_format& format) {
    return fmt::format("{} Hz, {}", format.sample_rate_hz, layout_text(format.channels, format.channel_mask));
}

} // namespace host
