#include "host/audio/speaker_check.h"

#include "host/audio/audio_error.h"
#include "host/audio/layout_text.h"
#include "velmora/channel_mask.h"

#include <bit>
#include <string>

namespace host {

namespace {

std::string text_of(std::uint32_t mask) {
    return layout_text(static_cast<std::uint32_t>(std::popcount(mask)), mask);
}

/// Whether one mask has its pair of surround speakers at the sides and the other at the back, with all else the same:
/// what the layout converter then makes of one is the other, without mixing.
bool differ_in_side_and_back(std::uint32_t a, std::uint32_t b) {
    namespace speaker = velmora::speaker;
    return (a ^ b) == (speaker::side_left | speaker::side_right | speaker::back_left | speaker::back_right);
}

std::string advice(std::string_view container, std::uint32_t wanted, std::uint32_t recorded) {
    if (container == "WAV") {
        return "";
    }
    const bool can_be_moved = differ_in_side_and_back(wanted, recorded);
    return ": write .wav" + (can_be_moved ? ", or add -e layout_converter:mask=" + text_of(recorded) : "");
}

} // namespace

void check_speakers(const std::filesystem::path& target, std::string_view container, std::uint32_t wanted,
                    std::uint32_t recorded) {
    if (wanted != recorded) {
        throw audio_error(target, std::string(container) + " cannot record " + text_of(wanted) +
                                      "; it would be read back as " + text_of(recorded) +
                                      advice(container, wanted, recorded));
    }
}

} // namespace host
