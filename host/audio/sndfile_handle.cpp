#include "host/audio/sndfile_handle.h"

#include <string_view>

namespace host {

std::string sndfile_reason(SNDFILE* file) {
    constexpr std::string_view prefix = "Error : ";
    std::string_view reason = sf_strerror(file);
    if (reason.starts_with(prefix)) {
        reason.remove_prefix(prefix.size());
    }
    if (reason.ends_with('.')) {
        reason.remove_suffix(1);
    }
    return std::string(reason);
}

} // namespace host
