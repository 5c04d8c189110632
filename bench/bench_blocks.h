// What the benchmarks are fed with.
#pragma once

#include "host/objects/block_list.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

inline constexpr std::uint32_t rate_hz = 44100;
inline constexpr std::size_t block_frames = 4096;
inline constexpr std::size_t track_blocks = 200; ///< of a track in an album, 18.6 s

/// Noise of one layout, uniform up to a peak.
struct material {
    std::string name;
    std::uint32_t channels;
    std::uint32_t channel_mask;
    double peak = 1.0;

    /// One block, interleaved; the same in every run.
    std::vector<double> samples() const;
};

const material mono{"mono", 1, 0x4};
const material stereo{"stereo", 2, 0x3};
const material surround{"5.1", 6, 0x3F};
const material surround_7_1{"7.1", 8, 0x63F};
const material stereo_silent{"stereo, -80 dB", 2, 0x3, 1e-4};
const material stereo_to_48_khz{"stereo, to 48 kHz", 2, 0x3};
const material stereo_to_48_khz_at_best{"stereo, to 48 kHz, Highest", 2, 0x3};
const material stereo_to_32_khz{"stereo, to 32 kHz", 2, 0x3};
const material stereo_below_full_scale{"stereo, idle", 2, 0x3};
const material stereo_above_full_scale{"stereo, reducing", 2, 0x3, 3.0};
const material surround_below_full_scale{"5.1, idle", 6, 0x3F};
const material surround_above_full_scale{"5.1, reducing", 6, 0x3F, 3.0};

/// One block that is filled again for each iteration.
class refilled_block {
public:
    explicit refilled_block(const material& source);

    host::block_list& fill();

private:
    material material_;
    std::vector<double> samples_;
    host::block_list list_;
};

/// Adds how many times faster than the music a benchmark of so many blocks an iteration was.
void count_speed(benchmark::State& state, std::size_t blocks = 1);

} // namespace bench
