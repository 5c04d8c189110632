// Consecutive tracks through a chain of effects into one file.
#pragma once

#include "host/audio/audio_format.h"
#include "host/audio/audio_writer.h"
#include "host/chain/effect_chain.h"
#include "host/chain/level_meter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <vector>

namespace host {

struct album_job {
    std::vector<std::filesystem::path> inputs; ///< at least one; played in this order
    std::filesystem::path output;
    std::optional<sample_encoding> encoding; ///< the container's own choice when empty
    std::size_t block_frames = 4096;         ///< frames of a block as it enters the chain; at least 1
};

/// What came of it.
struct album_report {
    double seconds_in = 0.0; ///< the tracks' length, each at its own rate
    double seconds_out = 0.0;
    std::uint64_t frames_in = 0;
    std::uint64_t frames_out = 0;
    audio_format format;    ///< of the output
    level_meter level;      ///< of the output, before the encoding
    double latency_s = 0.0; ///< the most that the chain held back at a time
};

/// Something about the job that a person has to change; the text says what.
class album_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Called now and then with the seconds of input done and, as far as the files tell, in all.
using progress_function = std::function<void(double done_s, double total_s)>;

/// Plays the tracks through the chain, block by block. The end of each track and the end of playback are given with an
/// empty list behind the track's last block. The output appears under its name only when all went well; an input is
/// never overwritten.
/// Throws `audio_error` for a file, `effect_failure`, `album_error`, `interrupted`.
album_report process_album(const album_job& job, effect_chain& chain, velmora::abort_signal& abort,
                           const progress_function& progress);

} // namespace host
