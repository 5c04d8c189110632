// The end of an Ogg stream.
#pragma once

#include "host/audio/binary_file.h"

namespace host {

/// Whether the last page in the file is whole and is one that ends a stream. A file that is cut between two pages looks
/// like one whose encoder left the mark off, so both are without an end. What lies behind the page, as tags do, is
/// passed over up to 64 KiB.
bool has_ogg_end(binary_file& file);

} // namespace host
