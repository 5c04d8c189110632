#include "host/audio/layout_text.h"

#include "velmora/layout_names.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <sstream>

namespace host {

std::string layout_text(std::uint32_t channels, std::uint32_t channel_mask) {
    const auto* const end = std::end(velmora::named_layouts);
    const auto* const found =
        std::find_if(std::begin(velmora::named_layouts), end,
                     [&](const velmora::named_layout& known) { return known.channel_mask == channel_mask; });
    if (found != end && static_cast<std::uint32_t>(std::popcount(channel_mask)) == channels) {
        return found->name;
    }
    std::ostringstream text;
    text << channels << (channels == 1 ? " channel" : " channels");
    text << " (mask 0x" << std::hex << std::uppercase << channel_mask << ')';
    return text.str();
}

std::string format_text(const audio_format& format) {
    return std::to_string(format.sample_rate_hz) + " Hz, " + layout_text(format.channels, format.channel_mask);
}

} // namespace host
