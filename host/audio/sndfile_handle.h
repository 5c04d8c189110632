// Open files of libsndfile.
#pragma once

#include <sndfile.h>

#include <memory>
#include <string>

namespace host {

struct sndfile_closer {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};

using sndfile_handle = std::unique_ptr<SNDFILE, sndfile_closer>;

/// What went wrong last with the file, or with the opening of one when it is null, in the library's words.
std::string sndfile_reason(SNDFILE* file);

} // namespace host
