#include "host/audio/mpeg_end.h"

#include "host/audio/audio_error.h"
#include "host/audio/mpeg_outline.h"

#include <string>

namespace host {

void check_mpeg_is_not_cut(binary_file& file) {
    const auto outline = outline_mpeg(file);
    if (!outline || outline->is_as_declared()) {
        return;
    }
    if (outline->there_bytes < outline->first.size_bytes) {
        throw audio_error(file.path(), "is cut short: it ends within the first frame");
    }
    if (outline->changes_format) {
        throw audio_error(file.path(), "changes its sample rate or channels on the way; only its start could be read");
    }
    const std::uint64_t declared_frames = outline->declared_frames.value_or(0);
    const bool lacks_bytes = outline->declared_bytes.value_or(0) > outline->there_bytes;
    if (lacks_bytes && outline->is_clear && outline->frames < declared_frames) {
        throw audio_error(file.path(), "is cut short: of " + std::to_string(declared_frames) + " MPEG frames only " +
                                           std::to_string(outline->frames) + " are there");
    }
}

} // namespace host
