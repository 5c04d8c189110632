#include "host/audio/speaker_check.h"

#include "host/audio/audio_error.h"

#include <sstream>

namespace host {

void check_speakers(const std::filesystem::path& target, std::string_view container, std::uint32_t wanted,
                    std::uint32_t recorded) {
    if (wanted != recorded) {
        std::ostringstream reason;
        reason << container << " cannot record the channel mask 0x" << std::hex << std::uppercase << wanted
               << "; it would be read back as 0x" << recorded;
        throw audio_error(target, reason.str());
    }
}

} // namespace host
