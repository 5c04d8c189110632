// What lies before the samples of a WAV or RF64 file.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/binary_file.h"
#include "host/audio/sample_codec.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace host {

/// A WAV has 32 bits for sizes, the highest value of which stands for "not known".
inline constexpr std::uint64_t riff_limit_bytes = 0xFFFFFFFE;

struct riff_header {
    audio_format format;
    std::optional<sample_layout> samples; ///< nothing: coded in another way than `sample_codec` knows
    std::uint64_t data_begin_bytes = 0;
    std::uint64_t data_size_bytes = 0; ///< as many as are there
};

/// Nothing when the file is neither WAV nor RF64. The file of a program that could not come back to fill in the size
/// has its audio up to its end. Throws `audio_error` for one that is damaged or shorter than it claims.
std::optional<riff_header> read_riff_header(binary_file& file);

/// The header for so many bytes of samples, of one length whatever their number: RF64 when a WAV's sizes would pass
/// `limit_bytes`. A mask with bits that have no name is written as none.
std::vector<std::byte> make_riff_header(const audio_format& format, const sample_layout& samples,
                                        std::uint64_t data_size_bytes, std::uint64_t limit_bytes);

} // namespace host
