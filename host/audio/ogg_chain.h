// Ogg files that are several, one behind the other.
#pragma once

#include "host/audio/binary_file.h"

namespace host {

/// Whether a stream begins in an Ogg file behind a page that begins none: libsndfile leaves that off without a word.
/// Streams that lie side by side, as those of a film do, all begin in front.
bool is_ogg_chain(binary_file& file);

} // namespace host
